#include "session/transfer_status.h"

#include <utility>

namespace kelvane {

namespace {

constexpr int repaint_ms = 250;

std::string_view activity_text(Activity activity) {
    switch (activity) {
        case Activity::idle:
            return "ready";
        case Activity::preparing:
            return "preparing";
        case Activity::waiting_for_start:
            return "waiting for Xon or Send";
        case Activity::sending:
            return "sending";
        case Activity::held_by_xoff:
            return "held by Xoff";
        case Activity::held_by_cts:
            return "held: CTS low";
        case Activity::paused:
            return "paused: Send goes on, Reset ends";
        case Activity::draining:
            return "waiting for the last characters to leave";
        case Activity::waiting_for_data:
            return "waiting for data";
        case Activity::receiving:
            return "receiving";
        case Activity::converting:
            return "converting";
        case Activity::saving:
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

void Transfer_status::begin(std::string_view port) {
    port_ = port;
    note_.clear();
    bytes_ = 0;
    started_ = loop_.now();
    activity_ = Activity::preparing;
    timer_.set_enabled(true);
    show();
}

void Transfer_status::set(Activity activity) {
    if (activity != activity_) {
        activity_ = activity;
        show();
    }
}

void Transfer_status::end(std::string note) {
    activity_ = Activity::idle;
    timer_.set_enabled(false);
    set_note(std::move(note));
}

void Transfer_status::set_note(std::string note) {
    note_ = std::move(note);
    show();
}

void Transfer_status::show() {
    label_.set_caption(activity_ == Activity::idle ? idle_text() : busy_text());
}

std::string Transfer_status::idle_text() const {
    const std::string text = "Machine: " + machine_;
    return note_.empty() ? text : text + "  |  " + note_;
}

std::string Transfer_status::busy_text() const {
    return machine_ + " on " + port_ + ": " + std::string(activity_text(activity_)) + "  |  " +
           std::to_string(bytes_) + " bytes  |  " + minutes_and_seconds(loop_.now() - started_);
}

}  // namespace kelvane
