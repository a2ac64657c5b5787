#include "session/transfer_status.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"
#include "platform/files.h"

namespace kelvane {

namespace {

constexpr int repaint_ms = 250;
/// Silence after which it is said what to look at.
constexpr Clock_time long_silence = std::chrono::seconds(30);

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

State_field::Kind kind_of(Transfer_state state) {
    using Kind = State_field::Kind;
    switch (state) {
        case Transfer_state::waiting_for_start:
        case Transfer_state::waiting_for_data:
            return Kind::waiting;
        case Transfer_state::held_by_xoff:
        case Transfer_state::held_by_cts:
        case Transfer_state::paused:
            return Kind::held;
        default:
            return Kind::running;
    }
}

/// Capital letter, and short enough for large letters.
std::string large_words(Transfer_state state) {
    if (state == Transfer_state::draining) {
        return "Last characters";
    }
    std::string words(state_text(state));
    if (state == Transfer_state::paused) {
        words.erase(words.find(':'));
    }
    words.replace(0, 1, upper_case(words.substr(0, 1)));
    return words;
}

std::string result_words(const Transfer_record& record) {
    const bool send = record.direction == Direction::send;
    switch (record.outcome) {
        case Outcome::done:
            return send ? "Sent" : "Received";
        case Outcome::stopped:
            return record.line > 0 ? "Stopped at line " + grouped_decimal(record.line) : "Stopped";
        case Outcome::refused:
            return send ? "Not sent" : "Not received";
        case Outcome::lost_line:
            return "Line lost";
        case Outcome::disk_full:
            return "Not saved";
        case Outcome::nothing_received:
            return "No text received";
        case Outcome::fault:
            return "Ended by a fault";
    }
    return {};
}

State_field::Kind result_kind(const Transfer_record& record) {
    if (record.outcome == Outcome::done) {
        return record.remarks.empty() ? State_field::Kind::done : State_field::Kind::stopped;
    }
    return record.outcome == Outcome::stopped ? State_field::Kind::stopped
                                              : State_field::Kind::failed;
}

/// What to look at when the machine says nothing in that state.
std::string_view advice(Transfer_state state) {
    switch (state) {
        case Transfer_state::waiting_for_start:
            return "The machine does not ask: is it set to read? Check port, baud rate and cable, "
                   "or "
                   "press Send";
        case Transfer_state::held_by_xoff:
            return "The machine sends no Xon: has its reading been stopped, or is its memory full?";
        case Transfer_state::held_by_cts:
            return "CTS stays low: is the machine on and set to read, and its RTS wired to pin 8 "
                   "of "
                   "a 9-pin plug?";
        case Transfer_state::waiting_for_data:
            return "Nothing comes: has punching been started at the machine? Check port, baud rate "
                   "and cable";
        default:
            return {};
    }
}

void add_part(std::string& text, const std::string& part, const char* separator) {
    text += (text.empty() || part.empty() ? "" : separator) + part;
}

std::string in_one_line(std::string sentences) {
    for (std::size_t at = 0; (at = sentences.find('\n', at)) != std::string::npos;) {
        sentences.replace(at, 1, ". ");
    }
    return sentences;
}

}  // namespace

Transfer_status::Transfer_status(Event_loop& loop, Label& label, State_field& field)
    : loop_(loop), label_(label), field_(field), timer_(loop, repaint_ms) {
    timer_.on_tick = [this] { show(); };
}

void Transfer_status::set_machine(std::string machine) {
    machine_ = std::move(machine);
    show();
}

void Transfer_status::set_summary(std::string summary) {
    summary_ = std::move(summary);
    show();
}

void Transfer_status::begin_record(Direction direction, std::string path) {
    record_ = {};
    record_.direction = direction;
    record_.path = std::move(path);
}

void Transfer_status::begin(std::string machine, std::string port) {
    begin_record(record_.direction, record_.path);
    record_.machine = std::move(machine);
    port_ = std::move(port);
    note_.clear();
    hint_.clear();
    caution_.clear();
    timer_.set_enabled(true);
    if (on_title) {
        on_title(title());
    }
}

void Transfer_status::set(Transfer_state state) {
    if (state != state_) {
        if (state_ == Transfer_state::paused) {
            paused_ += loop_.now() - since_;
        }
        state_ = state;
        advice_.clear();
        since_ = loop_.now();
        show();
    }
}

void Transfer_status::expect(std::uint64_t bytes, std::size_t lines, std::size_t first_line) {
    record_.total = bytes;
    record_.lines = lines;
    record_.first_line = first_line;
}

void Transfer_status::at_line(std::size_t line, std::string text) {
    record_.line = line;
    record_.line_text = std::move(text);
}

void Transfer_status::add_bytes(std::size_t bytes) {
    last_ = loop_.now();
    if (record_.bytes == 0) {
        started_ = last_;
        paused_ = {};
    }
    line_time_ = last_ - started_ - paused_;
    record_.bytes += static_cast<std::int64_t>(bytes);
}

void Transfer_status::restart_count() {
    record_.bytes = 0;
}

Transfer_record Transfer_status::record() const {
    Transfer_record record = record_;
    if (record.bytes > 0) {
        record.duration = last_ - started_;
    }
    return record;
}

void Transfer_status::set_caution(std::string caution) {
    caution_ = std::move(caution);
    show();
}

void Transfer_status::set_result(const Transfer_record& record) {
    result_ = {
        result_kind(record), result_words(record), {}, result_sentence(record), record.remarks};
}

void Transfer_status::end(std::string note) {
    timer_.set_enabled(false);
    if (on_title) {
        on_title({});
    }
    set_note(std::move(note));
}

void Transfer_status::set_hint(std::string hint) {
    hint_ = std::move(hint);
    show();
}

void Transfer_status::set_note(std::string note) {
    note_ = std::move(note);
    show();
}

void Transfer_status::add_note(const std::string& note) {
    add_part(note_, note, "  |  ");
    add_part(result_.advice, note, "\n");
    show();
}

void Transfer_status::add_end(const std::string& note, const std::string& remarks) {
    add_note(note);
    add_part(note_, in_one_line(remarks), "  |  ");
    show();
}

void Transfer_status::set_warning(std::string warning) {
    warning_ = std::move(warning);
    show();
}

void Transfer_status::show() {
    const bool idle = state_ == Transfer_state::idle;
    label_.set_caption(idle ? idle_text() : busy_text());
    field_.set_view(idle ? result_ : busy_view());
}

std::string Transfer_status::idle_text() const {
    std::string text = hint_ + (hint_.empty() ? "" : "  |  ") + machine_ +
                       (summary_.empty() ? "" : " \xb7 ") + summary_;
    for (const std::string* part : {&warning_, &note_}) {
        text += part->empty() ? "" : "  |  " + *part;
    }
    return text;
}

std::string Transfer_status::busy_text() const {
    std::string text = record_.machine + " on " + port_ + beginning(record_) + ": " +
                       std::string(state_text(state_)) + "  |  " + progress_text(record_) +
                       "  |  " + times_text();
    std::string said = advice_now();
    std::replace(said.begin(), said.end(), '\n', ';');
    return text + (said.empty() ? "" : "  |  ") + said;
}

/// Before the start what is to be known of the program, too.
std::string Transfer_status::advice_now() const {
    const bool silent = loop_.now() - since_ >= long_silence;
    std::string text(!silent ? "" : advice_.empty() ? advice(state_) : advice_);
    if (state_ == Transfer_state::waiting_for_start && !caution_.empty()) {
        text += (text.empty() ? "" : "\n") + caution_;
    }
    return text;
}

std::string Transfer_status::title() const {
    return name_of(record_.path) + (record_.direction == Direction::send ? " to " : " from ") +
           record_.machine;
}

State_field::View Transfer_status::busy_view() const {
    const bool known = record_.total > 0;
    return {kind_of(state_), large_words(state_),
            known ? percent_text(record_)
                  : grouped_decimal(static_cast<std::uint64_t>(record_.bytes)) + " bytes",
            title() + " on " + port_ + beginning(record_) + ":  " + progress_text(record_) + ",  " +
                times_text(),
            advice_now()};
}

/// Time gone since the first byte, or before it since the wait began; and the time left, as fast as
/// the line has been up to the last byte, the operator's pauses left out: while it is held, the
/// estimate stands.
std::string Transfer_status::times_text() const {
    const bool begun = record_.bytes > 0;
    const Clock_time gone = loop_.now() - (begun ? started_ : since_);
    if (!begun || record_.sent == 0 || record_.total <= record_.sent) {
        return minutes_and_seconds(gone);
    }
    const double share =
        static_cast<double>(record_.total - record_.sent) / static_cast<double>(record_.sent);
    const auto left =
        std::chrono::duration_cast<Clock_time>(std::chrono::duration<double>(line_time_) * share);
    return minutes_and_seconds(gone) + ", " + minutes_and_seconds(left) + " left";
}

}  // namespace kelvane
