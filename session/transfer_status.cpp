#include "session/transfer_status.h"

#include <utility>

namespace kelvane {

namespace {

constexpr int repaint_ms = 250;

std::string_view state_text(Transfer_state state) {
    switch (state) {
        case Transfer_state::idle:
            return "ready";
        case Transfer_state::preparing:
            return "preparing";
        case Transfer_state::waiting_for_start:
            return "waiting for Xon or Send";
        case Transfer_state::sending:
            return "sending";
        case Transfer_state::held_by_xoff:
            return "held by Xoff";
        case Transfer_state::held_by_cts:
            return "held: CTS low";
        case Transfer_state::paused:
            return "paused: Send goes on, Reset ends";
        case Transfer_state::draining:
            return "waiting for the last characters to leave";
        case Transfer_state::waiting_for_data:
            return "waiting for data";
        case Transfer_state::receiving:
            return "receiving";
        case Transfer_state::converting:
            return "converting";
        case Transfer_state::saving:
            return "saving";
    }
    return {};
}

std::string minutes_and_seconds(Clock_time span) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span).count();
    const std::string rest = std::to_string(seconds % 60);
    return std::to_string(seconds / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

}  // namespace

Transfer_status::Transfer_status(Event_loop& loop, Label& label)
    : loop_(loop), label_(label), timer_(loop, repaint_ms) {
    timer_.on_tick = [this] { show(); };
}

void Transfer_status::set_machine(std::string machine) {
    machine_ = std::move(machine);
    show();
}

void Transfer_status::begin(std::string machine, std::string port) {
    machine_of_transfer_ = std::move(machine);
    port_ = std::move(port);
    note_.clear();
    bytes_ = 0;
    started_ = loop_.now();
    state_ = Transfer_state::preparing;
    timer_.set_enabled(true);
    show();
}

void Transfer_status::set(Transfer_state state) {
    if (state != state_) {
        state_ = state;
        show();
    }
}

void Transfer_status::end(std::string note) {
    state_ = Transfer_state::idle;
    timer_.set_enabled(false);
    set_note(std::move(note));
}

void Transfer_status::set_note(std::string note) {
    note_ = std::move(note);
    show();
}

void Transfer_status::set_warning(std::string warning) {
    warning_ = std::move(warning);
    show();
}

void Transfer_status::show() {
    label_.set_caption(state_ == Transfer_state::idle ? idle_text() : busy_text());
}

std::string Transfer_status::idle_text() const {
    std::string text = "Machine: " + machine_;
    for (const std::string* part : {&warning_, &note_}) {
        text += part->empty() ? "" : "  |  " + *part;
    }
    return text;
}

std::string Transfer_status::busy_text() const {
    return machine_of_transfer_ + " on " + port_ + ": " + std::string(state_text(state_)) +
           "  |  " + std::to_string(bytes_) + " bytes  |  " +
           minutes_and_seconds(loop_.now() - started_);
}

}  // namespace kelvane
