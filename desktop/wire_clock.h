#pragma once

#include <cstddef>

#include "platform/event_loop.h"

namespace kelvane {

/// How much of what was handed to a line can still be on its way, reckoned from the line's speed:
/// drivers count neither what is in the chip nor what is in a USB adapter's buffer, and a
/// pseudo-terminal counts nothing at all.
///
/// An adapter's own clock may be some thousandths slow, and what the reckoning misses would pile up
/// in its buffer, to leave after an Xoff. So a character is reckoned longer than the nominal one,
/// by more where a slow line leaves time to spare; lost time is never made up.
class Wire_clock {
  public:
    /// An idle line of `baud` bits a second, at least 1, with `bits` to a character.
    void start(int baud, int bits);
    /// `count` characters are handed over at `now`; they follow those that still wait.
    void sent(std::size_t count, Clock_time now);
    /// Characters that cannot have left completely by `now`.
    [[nodiscard]] std::size_t queued(Clock_time now) const;
    /// Time from `now` until no more than `count` characters are queued; 0 or less: it is so now.
    [[nodiscard]] Clock_time time_until(std::size_t count, Clock_time now) const;
    /// The time that `count` characters take.
    [[nodiscard]] Clock_time duration(std::size_t count) const;
    /// Time from `now` until even a clock a hundredth slower than reckoned, behind a USB adapter,
    /// has sent the last character; 0 or less: the line is at rest.
    [[nodiscard]] Clock_time time_until_rest(Clock_time now) const;

  private:
    double character_time_ = 0;  ///< microseconds
    double idle_from_ = 0;       ///< microseconds on the loop's clock
    /// Begin of the unbroken run, on the same clock. A run ends only where the line is at rest:
    /// the short gaps of a late sender do not empty an adapter.
    double run_from_ = 0;
};

}  // namespace kelvane
