#include "desktop/wire_clock.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

/// How much longer than nominal a character is reckoned. Up to here a line has time to spare.
constexpr int spare_time_below = 57600;
constexpr double slow_line_margin = 0.01;
constexpr double fast_line_margin = 0.006;
/// What an adapter still holds at the end of a run: a USB transfer or two, and what its clock has
/// lost in the run.
constexpr double adapter_delay = 20'000;
constexpr double clock_error = 0.01;

double microseconds(Clock_time time) {
    return static_cast<double>(time.count());
}

Clock_time rounded_up(double time) {
    return Clock_time(static_cast<Clock_time::rep>(std::ceil(time)));
}

}  // namespace

void Wire_clock::start(int baud, int bits) {
    const double margin = baud < spare_time_below ? slow_line_margin : fast_line_margin;
    character_time_ = 1e6 * bits / baud * (1 + margin);
    idle_from_ = -adapter_delay;
    run_from_ = idle_from_;
}

void Wire_clock::sent(std::size_t count, Clock_time now) {
    if (time_until_rest(now) <= Clock_time(0)) {
        run_from_ = microseconds(now);
    }
    idle_from_ =
        std::max(idle_from_, microseconds(now)) + character_time_ * static_cast<double>(count);
}

std::size_t Wire_clock::queued(Clock_time now) const {
    const double left = idle_from_ - microseconds(now);
    // A hair less than a whole character more is rounding, no character.
    constexpr double tolerance = 1e-6;
    return left <= 0 ? 0 : static_cast<std::size_t>(std::ceil(left / character_time_ - tolerance));
}

Clock_time Wire_clock::time_until(std::size_t count, Clock_time now) const {
    const double rest = character_time_ * static_cast<double>(count);
    return rounded_up(idle_from_ - rest - microseconds(now));
}

Clock_time Wire_clock::duration(std::size_t count) const {
    return rounded_up(character_time_ * static_cast<double>(count));
}

Clock_time Wire_clock::time_until_rest(Clock_time now) const {
    const double rest_from = idle_from_ + adapter_delay + clock_error * (idle_from_ - run_from_);
    return rounded_up(rest_from - microseconds(now));
}

}  // namespace kelvane
