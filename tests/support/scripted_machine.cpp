#include "support/scripted_machine.h"

#include <algorithm>
#include <cmath>

#include "platform/basic_text.h"

namespace kelvane::testing {

Port_error Scripted_machine::open(const Port_settings& settings) {
    lost_ = false;
    settings_ = settings;
    ++times_opened_;
    if (refusal_ != Port_error::none || Val(settings.settings) <= 0) {
        return refusal_ != Port_error::none ? refusal_ : Port_error::bad_settings;
    }
    open_ = true;
    ++line_;
    on_line_.clear();
    to_program_.clear();
    return Port_error::none;
}

void Scripted_machine::close() {
    open_ = false;
    ++line_;
    on_line_.clear();
}

std::string Scripted_machine::device_of(int com_port) const {
    return "/dev/test" + std::to_string(com_port);
}

double Scripted_machine::characters_per_second() const {
    const bool two_stop_bits = !settings_.settings.ends_with(",1");
    return Val(settings_.settings) / (two_stop_bits ? 11 : 10);
}

Clock_time Scripted_machine::character_time() const {
    return Clock_time(std::llround(1e6 / characters_per_second()));
}

std::string Scripted_machine::input(std::size_t most) {
    std::string taken = to_program_.substr(0, most == 0 ? std::string::npos : most);
    to_program_.erase(0, taken.size());
    return taken;
}

void Scripted_machine::output(std::string_view bytes) {
    if (!open_) {
        return;
    }
    const bool idle = on_line_.empty();
    on_line_ += bytes;
    most_queued_ = std::max(most_queued_, on_line_.size());
    if (idle && !on_line_.empty()) {
        shift_next();
    }
}

void Scripted_machine::shift_next() {
    loop_.after(character_time(), [this, line = line_] {
        if (line != line_) {
            return;
        }
        const char byte = on_line_.front();
        on_line_.erase(0, 1);
        if (!on_line_.empty()) {
            shift_next();
        }
        arrive(byte);
    });
}

void Scripted_machine::arrive(char byte) {
    received_ += byte;
    times_.push_back(loop_.now());
    for (std::size_t i = 0; i < triggers_.size();) {
        if (triggers_[i].first == received_.size()) {
            const auto action = std::move(triggers_[i].second);
            triggers_.erase(triggers_.begin() + static_cast<std::ptrdiff_t>(i));
            action();
        } else {
            ++i;
        }
    }
}

Scripted_machine::Moment Scripted_machine::after_bytes(std::size_t count) {
    return Moment([this, count](std::function<void()> action) {
        triggers_.emplace_back(count, std::move(action));
    });
}

Scripted_machine::Moment Scripted_machine::after(Clock_time span) {
    return Moment(
        [this, span](std::function<void()> action) { loop_.after(span, std::move(action)); });
}

void Scripted_machine::sends(std::string bytes) {
    input_free_ = std::max(input_free_, loop_.now());
    for (const char byte : bytes) {
        input_free_ += open_ ? character_time() : Clock_time(1);
        loop_.at(input_free_, [this, byte] {
            if (open_ && !(settings_.null_discard && byte == '\0')) {
                to_program_ += byte;
            }
        });
    }
}

void Scripted_machine::hang_up() {
    close();
    lost_ = true;
}

void Scripted_machine::refuse(Port_error error, std::string text) {
    refusal_ = error;
    error_text_ = std::move(text);
}

}  // namespace kelvane::testing
