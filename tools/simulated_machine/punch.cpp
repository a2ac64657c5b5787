#include "simulated_machine/punch.h"

#include <algorithm>

namespace kelvane::simulated {

namespace {

constexpr std::chrono::seconds knock_interval{3};

std::string punched_lines(std::string_view program, const Options& options) {
    std::string tape;
    const std::string end_of_block = encode(options.end_of_block, options.code);
    while (!program.empty()) {
        const std::size_t end = program.find('\n');
        std::string_view line = program.substr(0, end);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        tape += encode(line, options.code);
        if (end == std::string_view::npos) {
            return tape;
        }
        tape += end_of_block;
        program.remove_prefix(end + 1);
    }
    return tape;
}

}  // namespace

std::string tape_of(std::string_view program, const Options& options) {
    if (options.binary) {
        return std::string(program);
    }
    if (options.bare) {
        return punched_lines(program, options);
    }
    std::string text(program);
    if (!text.starts_with('%')) {
        text = "%\n" + text + (text.ends_with('\n') ? "%" : "\n%");
    }
    std::string tape;
    if (!options.dc2_until_answered) {
        tape += static_cast<char>(control_byte(Control::punch_on, options.code));
    }
    tape.append(options.leader, static_cast<char>(options.leader_byte));
    tape += punched_lines(text, options);
    tape.append(options.trailer, static_cast<char>(options.leader_byte));
    return tape + static_cast<char>(control_byte(Control::punch_off, options.code));
}

Punch::Punch(const Options& options, Line& line, Contact& contact, std::string_view program)
    : options_(options),
      line_(line),
      contact_(contact),
      tape_(tape_of(program, options)),
      answered_(!options.dc2_until_answered) {}

Outcome Punch::run(Report& report) {
    std::optional<Outcome> outcome;
    line_.look_after(1);
    while (!outcome) {
        outcome = line_.wait(next_moment());
        if (!outcome) {
            outcome = step();
        }
    }
    describe(report, *outcome);
    return *outcome;
}

Time Punch::next_moment() const {
    if (position_ > 0 || held_ || !line_.partner_present()) {
        return never;
    }
    const Time begin = contact_.begins_at();
    return knocks_ > 0 && !answered_ && begin != never ? next_knock_ : begin;
}

std::optional<Outcome> Punch::step() {
    if (contact_.update()) {
        knocks_ = 0;
    }
    listen();
    if (position_ > 0 && !line_.partner_present()) {
        return Outcome::closed_early;
    }
    const Time now = Clock::now();
    if (!line_.partner_present() || now < contact_.begins_at()) {
        return std::nullopt;
    }
    if (!answered_) {
        knock(now);
    } else if (!held_) {
        feed();
    }
    const bool all_out = position_ == tape_.size() && line_.unsent() == 0;
    return all_out && answered_ ? std::optional(Outcome::done) : std::nullopt;
}

void Punch::knock(Time now) {
    if (knocks_ == 0 || now >= next_knock_) {
        line_.send(control_byte(Control::punch_on, options_.code));
        next_knock_ = now + knock_interval;
        ++knocks_;
    }
}

void Punch::listen() {
    while (const std::optional<Arrival> arrival = line_.take()) {
        if (!contact_.passes(arrival->byte)) {
            continue;
        }
        if (is_control(arrival->byte, Control::xoff)) {
            hold(arrival->at);
        } else if (is_control(arrival->byte, Control::xon)) {
            answered_ = answered_ || knocks_ > 0;
            held_time_ += held_ ? arrival->at - held_since_ : Duration::zero();
            held_ = false;
        }
    }
}

void Punch::hold(Time now) {
    if (!held_) {
        held_ = true;
        held_since_ = now;
        ++holds_;
        position_ -= std::min(position_, line_.withdraw());
    }
}

// So far ahead of the line that waking late leaves no gap.
void Punch::feed() {
    using std::chrono::milliseconds;
    const auto per_step = static_cast<std::size_t>(milliseconds(50) / line_.character_time());
    const std::size_t ahead = options_.full_speed ? 4096 : std::max<std::size_t>(2, per_step);
    if (position_ == 0 && !tape_.empty()) {
        first_start_ = Clock::now();
    }
    while (position_ < tape_.size() && line_.unsent() < ahead) {
        line_.send(static_cast<std::uint8_t>(tape_[position_]));
        ++position_;
    }
}

void Punch::describe(Report& report, Outcome outcome) const {
    report.add("job", "punch");
    report.add("result", name_of(outcome));
    const std::size_t sent = position_ - std::min(position_, line_.unsent());
    add_line_use(report, sent, first_start_, line_.last_sent(), line_.character_time());
    report.add("xoffs", holds_);
    report.add("late_ms_max", seconds(line_.late()) * 1000);
    report.add("held_seconds", seconds(held_time_));
    report.add("dc2_sent",
               options_.dc2_until_answered ? knocks_ : !options_.bare && !options_.binary);
}

}  // namespace kelvane::simulated
