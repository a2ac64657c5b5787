#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "simulated_machine/line.h"
#include "simulated_machine/options.h"

namespace kelvane::simulated {

/// The machine's Xon and Xoff towards a partner that sends, and how well the partner obeys.
class Flow {
  public:
    Flow(const Options& options, Line& line);

    /// Sends Xoff; the characters that come from now on are counted.
    void hold();

    /// Sends Xon, if the machine ever does.
    void release();

    [[nodiscard]] bool holding() const { return holding_; }

    /// Takes note of an arrival; false when more have come since the Xoff reached the partner than
    /// the machine puts up with.
    [[nodiscard]] bool count(Time arrival);

    /// When the last Xon was sent; the clock's start when none was.
    [[nodiscard]] Time released_at() const { return released_at_; }

    /// Characters that arrived after each Xoff, in order.
    [[nodiscard]] const std::vector<std::size_t>& after_each_xoff() const { return after_; }

    /// The time in which the partner was held.
    [[nodiscard]] Duration held() const { return held_; }

  private:
    void note_delivery();

    Line& line_;
    std::uint8_t xon_;
    std::uint8_t xoff_;
    bool silent_;
    std::size_t limit_;
    bool holding_ = false;
    std::optional<Time> reached_;  // when the Xoff was handed over
    Time released_at_{};
    Duration held_{};
    std::vector<std::size_t> after_;
};

}  // namespace kelvane::simulated
