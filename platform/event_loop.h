#pragma once

#include <chrono>
#include <coroutine>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "platform/task.h"

namespace kelvane {

class Task_keeper;
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

/// The event loop and its clock. Tasks wait here, and nowhere else; after each wait flags are read
/// again, because the operator may have pressed anything.
class Event_loop {
  public:
    Event_loop() = default;
    Event_loop(const Event_loop&) = delete;
    Event_loop& operator=(const Event_loop&) = delete;
    virtual ~Event_loop() = default;

    /// The wait of a task for something outside, always in a loop that looks whether it has come:
    ///
    ///     while (!machine_asks()) { co_await loop.next(); }
    ///
    /// It goes on when something may have changed: input on the port, a timer that was due, a press
    /// or another window event, queued output that has drained far enough for the sender, a task
    /// that has gone on or ended. Tasks go on in the order in which they began to wait.
    [[nodiscard]] auto next() { return Wait{*this}; }

    /// The wait of a task that works on: lets windows, timers and other tasks in. It costs no more
    /// than a clock read when called again within some milliseconds.
    [[nodiscard]] auto breath() { return Breath{*this}; }

    /// Tells the waiting tasks that something may have changed which no event of the loop tells;
    /// returns at once.
    virtual void wake() = 0;

    [[nodiscard]] virtual Clock_time now() const = 0;

    [[nodiscard]] Timer_queue& timers() { return timers_; }

  protected:
    [[nodiscard]] bool tasks_wait() const { return !waiting_.empty(); }
    /// Lets every task that waits go on, once; to be called after each dispatch. True when one has
    /// done more than look and wait again: then others may find that something has changed. Throws
    /// what has left a task that nobody awaits.
    bool resume_tasks();
    /// A task works so long between two breaths.
    Clock_time breath_interval{};

  private:
    friend Task_keeper;

    struct Wait {
        Event_loop& loop;
        [[nodiscard]] bool await_ready() const noexcept { return false; }
        template <typename Promise>
        void await_suspend(std::coroutine_handle<Promise> task) const {
            loop.waiting_.add(task.promise().waiter(), task);
        }
        void await_resume() const noexcept {}
    };

    struct Breath {
        Event_loop& loop;
        bool waited = false;
        [[nodiscard]] bool await_ready() const { return loop.now() < loop.next_breath_; }
        template <typename Promise>
        void await_suspend(std::coroutine_handle<Promise> task) {
            waited = true;
            loop.waiting_.add(task.promise().waiter(), task);
            loop.wake();
        }
        void await_resume() const {
            if (waited) {
                loop.next_breath_ = loop.now() + loop.breath_interval;
            }
        }
    };

    void resume(std::coroutine_handle<> task);
    void end_tasks();

    Timer_queue timers_;
    Wait_list waiting_;
    std::vector<Task_keeper*> keepers_;
    std::vector<Task<>> ending_;  ///< given up by their keepers, perhaps one that runs now
    int running_ = 0;             ///< tasks on the call stack
    Clock_time next_breath_{};
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
