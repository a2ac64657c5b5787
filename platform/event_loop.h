#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace kelvane {

class Timer;

/// Time since an arbitrary start, never going back. The only clock of the program.
using Clock_time = std::chrono::microseconds;

/// The timers that run, in the order in which they fall due (by due time, then by order of start).
class Timer_queue {
  public:
    void start(Timer& timer, Clock_time due);
    void stop(const Timer& timer);
    [[nodiscard]] std::optional<Clock_time> next_due() const;
    /// Runs the one timer that is due at or before `now` and comes first; it is set for its next
    /// tick before its handler runs, so the handler may stop or restart it. False when none is due.
    bool run_next(Clock_time now);
    /// Called after every change of `next_due()`.
    std::function<void()> on_changed;

  private:
    struct Entry {
        Timer* timer;
        Clock_time due;
        std::uint64_t order;
    };
    [[nodiscard]] std::vector<Entry>::const_iterator first() const;
    void changed() const;

    std::vector<Entry> entries_;
    std::uint64_t next_order_ = 0;
};

/// The event loop and its clock. Waiting and working routines hand control back here, and nowhere
/// else; after each yield flags are read again, because the operator may have pressed anything.
class Event_loop {
  public:
    Event_loop() = default;
    Event_loop(const Event_loop&) = delete;
    Event_loop& operator=(const Event_loop&) = delete;
    virtual ~Event_loop() = default;

    /// The yield of a waiting loop: runs due timers and window events, then sleeps until something
    /// can have changed: input on the port, a due timer, a window event, queued output that has
    /// drained far enough for the sender, or a few ten milliseconds.
    virtual void process_events() = 0;

    /// The yield of a working loop: as `process_events` but never sleeps, and costs no more than a
    /// clock read when it was called a few milliseconds ago.
    virtual void process_pending() = 0;

    [[nodiscard]] virtual Clock_time now() const = 0;

    [[nodiscard]] Timer_queue& timers() { return timers_; }

  private:
    Timer_queue timers_;
};

/// A timer control: while enabled it ticks every `interval` milliseconds. Setting it enabled always
/// restarts the count; an interval of 0 or less never ticks.
class Timer {
  public:
    Timer(Event_loop& loop, int interval_ms);
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer();

    [[nodiscard]] int interval() const { return interval_ms_; }
    /// A change while enabled restarts the count.
    void set_interval(int milliseconds);
    [[nodiscard]] bool enabled() const { return enabled_; }
    void set_enabled(bool enabled);

    std::function<void()> on_tick;

  private:
    Event_loop& loop_;
    int interval_ms_;
    bool enabled_ = false;
};

}  // namespace kelvane
