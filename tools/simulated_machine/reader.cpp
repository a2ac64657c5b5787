#include "simulated_machine/reader.h"

#include <algorithm>
#include <iostream>

namespace kelvane::simulated {

namespace {

// The trailer behind the closing "%" may still be under way.
constexpr std::chrono::milliseconds settling{300};

std::string joined(const std::vector<std::size_t>& numbers) {
    std::string text;
    for (const std::size_t number : numbers) {
        text += (text.empty() ? "" : ",") + std::to_string(number);
    }
    return text;
}

}  // namespace

Reader::Reader(const Options& options, Line& line, Contact& contact, bool asks)
    : options_(options),
      line_(line),
      contact_(contact),
      asks_(asks && !options.silent),
      buffer_(options.buffer, options.drain),
      flow_(options, line),
      text_(options.end_of_block, options.label_skip) {}

Outcome Reader::run(Report& report) {
    std::optional<Outcome> outcome;
    while (!outcome) {
        look_out();
        outcome = line_.wait(std::min({next_ask(), resume_time(), silence_ends()}));
        if (!outcome) {
            outcome = step();
        }
    }
    if (*outcome != Outcome::hung_up) {
        say_goodbye();
    }
    describe(report, *outcome);
    return *outcome;
}

std::optional<Outcome> Reader::step() {
    if (contact_.update()) {
        asked_at_.reset();
    }
    while (const std::optional<Arrival> arrival = line_.take()) {
        if (!contact_.passes(arrival->byte)) {
            continue;
        }
        if (const std::optional<Outcome> outcome = accept(*arrival)) {
            return outcome;
        }
    }
    const Time now = Clock::now();
    ask(now);
    regulate(now);
    return ended(now);
}

std::optional<Outcome> Reader::accept(const Arrival& arrival) {
    raw_ += static_cast<char>(arrival.byte);
    first_ = raw_.size() == 1 ? arrival.at : first_;
    last_ = arrival.at;
    if (!flow_.count(arrival.at)) {
        return alarm(Outcome::too_many_after_xoff,
                     std::to_string(flow_.after_each_xoff().back()) +
                         " characters came after DC3, the last one is");
    }
    if (!buffer_.put(arrival.at)) {
        return alarm(Outcome::overrun, "input buffer full at");
    }
    if (!options_.binary) {
        if (text_.significant() && !parity_good(arrival.byte, options_.code)) {
            return alarm(Outcome::parity_error, "parity of");
        }
        text_.feed(decode(arrival.byte, options_.code));
    }
    if (raw_.size() == options_.pause_at) {
        paused_until_ = arrival.at + options_.pause;
        flow_.hold();
    }
    if (!flow_.holding() && buffer_.level(arrival.at) >= options_.high_water) {
        flow_.hold();
    }
    return std::nullopt;
}

std::optional<Outcome> Reader::alarm(Outcome outcome, const std::string& message) {
    const auto byte = static_cast<unsigned>(static_cast<std::uint8_t>(raw_.back()));
    message_ =
        message + " byte " + std::to_string(byte) + " at position " + std::to_string(raw_.size());
    std::cerr << "ALARM: " << message_ << "\n";
    return end_as(outcome, "alarm");
}

Time Reader::next_ask() const {
    if (!asks_ || !raw_.empty() || !line_.partner_present() || contact_.begins_at() == never) {
        return never;
    }
    if (!asked_at_) {
        return contact_.begins_at();
    }
    return options_.ask_again.count() > 0 ? *asked_at_ + options_.ask_again : never;
}

void Reader::ask(Time now) {
    if (now >= next_ask()) {
        line_.send(control_byte(Control::xon, options_.code));
        asked_at_ = now;
    }
}

Time Reader::resume_time() const {
    if (!flow_.holding() || options_.silent) {
        return never;
    }
    return std::max(paused_until_, buffer_.when_down_to(options_.low_water));
}

void Reader::regulate(Time now) {
    if (now >= resume_time() && buffer_.level(now) <= options_.low_water) {
        flow_.release();
    }
}

// The line need not wake the machine for every byte, only for those at which it has to act.
void Reader::look_out() {
    std::size_t bytes = 64;
    if (!flow_.holding()) {
        const std::size_t level = buffer_.level(Clock::now());
        bytes = std::min(bytes, options_.high_water - std::min(level, options_.high_water));
    }
    if (options_.pause_at > raw_.size()) {
        bytes = std::min(bytes, options_.pause_at - raw_.size());
    }
    line_.look_after(options_.dc3_after_percent ? 1 : bytes);
}

Time Reader::silence_ends() const {
    if (raw_.empty() || line_.incoming()) {
        return never;
    }
    if (text_.ended()) {
        return last_ + settling;
    }
    const bool counts = options_.idle.count() > 0 && !flow_.holding();
    return counts ? std::max(last_, flow_.released_at()) + options_.idle : never;
}

std::optional<Outcome> Reader::ended(Time now) {
    if (raw_.empty()) {
        return std::nullopt;
    }
    const bool silent_long_enough = now >= silence_ends();
    const bool closed = !line_.partner_present() && !line_.incoming();
    if (text_.ended() && (options_.dc3_after_percent || silent_long_enough || closed)) {
        return end_as(Outcome::done, "percent");
    }
    if (closed || silent_long_enough) {
        const bool complete = silent_long_enough || options_.binary || text_.program_stop_seen();
        const std::string_view how = text_.program_stop_seen() ? "m30" : closed ? "closed" : "idle";
        return end_as(complete ? Outcome::done : Outcome::closed_early, how);
    }
    return std::nullopt;
}

std::optional<Outcome> Reader::end_as(Outcome outcome, std::string_view how) {
    end_ = how;
    return outcome;
}

void Reader::say_goodbye() {
    line_.withdraw();
    line_.send(control_byte(Control::xoff, options_.code));
    const Time limit = Clock::now() + line_.character_time() + std::chrono::milliseconds(100);
    while (line_.unsent() > 0 && Clock::now() < limit && !line_.wait(limit)) {
    }
}

void Reader::describe(Report& report, Outcome outcome) const {
    const std::vector<std::size_t>& after = flow_.after_each_xoff();
    report.add("job", "read");
    report.add("result", name_of(outcome));
    report.add("end", end_);
    add_line_use(report, raw_.size(), first_ - line_.character_time(), last_,
                 line_.character_time());
    report.add("characters", content().size());
    report.add("xoffs", after.size());
    report.add("after_xoff_max", after.empty() ? 0 : *std::ranges::max_element(after));
    report.add("after_xoff", joined(after));
    report.add("late_ms_max", seconds(line_.late()) * 1000);
    report.add("held_seconds", seconds(flow_.held()));
    if (!message_.empty()) {
        report.add("message", message_);
    }
}

}  // namespace kelvane::simulated
