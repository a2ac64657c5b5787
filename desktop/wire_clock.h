#pragma once

#include <cstddef>

#include "platform/event_loop.h"

namespace kelvane {

/// How much of what was handed to a line can still be on its way, reckoned from the line's speed:
/// drivers count neither what is in the chip nor what is in a USB adapter's buffer, and a
/// pseudo-terminal counts nothing at all.
class Wire_clock {
  public:
    /// An idle line that takes `characters_per_second`, above 0.
    void start(double characters_per_second);
    /// `count` characters are handed over at `now`; they follow those that still wait.
    void sent(std::size_t count, Clock_time now);
    /// Characters that cannot have left completely by `now`.
    [[nodiscard]] std::size_t queued(Clock_time now) const;
    /// Time from `now` until no more than `count` characters are queued; 0 or less: it is so now.
    [[nodiscard]] Clock_time time_until(std::size_t count, Clock_time now) const;
    /// The time that `count` characters take.
    [[nodiscard]] Clock_time duration(std::size_t count) const;

  private:
    double character_time_ = 0;  ///< microseconds
    double idle_from_ = 0;       ///< microseconds on the loop's clock
};

}  // namespace kelvane
