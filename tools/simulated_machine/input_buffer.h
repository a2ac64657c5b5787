#pragma once

#include <cstddef>

#include "simulated_machine/outcome.h"

namespace kelvane::simulated {

/// How full the machine's input buffer is: the line fills it, the control uses it up evenly.
class Input_buffer {
  public:
    /// A drain of 0 characters a second empties the buffer at once.
    Input_buffer(std::size_t size, double drain);

    /// A character comes in; false when there was no room for it.
    [[nodiscard]] bool put(Time at);

    /// Filling at a time that is not before that of an earlier call.
    [[nodiscard]] std::size_t level(Time at);

    /// When the filling will have gone down to the level if nothing more comes.
    [[nodiscard]] Time when_down_to(std::size_t level) const;

  private:
    std::size_t size_;
    Duration use_time_;  // of one character; 0: at once
    std::size_t level_ = 0;
    Time next_use_{};
};

}  // namespace kelvane::simulated
