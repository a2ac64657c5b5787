#pragma once

#include <chrono>

namespace kelvane::simulated {

using Clock = std::chrono::steady_clock;
using Time = Clock::time_point;
using Duration = Clock::duration;

/// A moment that never comes.
inline constexpr Time never = Time::max();

/// How a job, and with it the process, ended. The values are the exit status.
enum class Outcome {
    done = 0,
    trouble = 1,              ///< a file or the pseudo-terminal failed
    usage = 2,                ///< options not understood
    too_many_after_xoff = 3,  ///< alarm: the partner went on sending after DC3
    parity_error = 4,         ///< alarm: a byte with the wrong parity for the tape code
    overrun = 5,              ///< alarm: the input buffer was full
    closed_early = 6,         ///< the partner closed the line before the job was complete
    hung_up = 7,              ///< the line was cut, as asked for
    timed_out = 8,            ///< the overall time limit passed
    stopped = 9,              ///< a signal or the operator ended the job
};

}  // namespace kelvane::simulated
