#include "desktop/wire_clock.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

double microseconds(Clock_time time) {
    return static_cast<double>(time.count());
}

Clock_time rounded_up(double time) {
    return Clock_time(static_cast<Clock_time::rep>(std::ceil(time)));
}

}  // namespace

void Wire_clock::start(double characters_per_second) {
    character_time_ = 1e6 / characters_per_second;
    idle_from_ = 0;
}

void Wire_clock::sent(std::size_t count, Clock_time now) {
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

}  // namespace kelvane
