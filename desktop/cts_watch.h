#pragma once

#include <optional>

#include "platform/event_loop.h"

namespace kelvane {

/// Says when CTS must be asked for. On some USB adapters every look costs a transfer of a
/// millisecond, while a driver's count of the changes costs nothing. But not every driver that has
/// such a count keeps it, and a change that is missed is a machine that is overrun: a count is
/// believed only when it has been seen to move or is known to, only while CTS is high, and only for
/// a tenth of a second.
class Cts_watch {
  public:
    /// `counted`: the driver is known to count the changes.
    void start(bool counted);
    /// `changes` is the driver's count now; none where it has no count.
    [[nodiscard]] bool must_ask(std::optional<int> changes, Clock_time now) const;
    /// CTS has been asked for after `changes` was.
    void asked(std::optional<int> changes, bool clear, Clock_time now);
    /// As last asked for.
    [[nodiscard]] bool clear() const { return clear_; }

  private:
    enum class Count { unproved, kept, not_kept };

    Count count_ = Count::unproved;
    std::optional<int> changes_;
    bool clear_ = false;
    bool ever_asked_ = false;
    Clock_time asked_at_{};
};

}  // namespace kelvane
