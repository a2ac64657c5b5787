#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/event_loop.h"
#include "platform/task_keeper.h"

namespace kelvane::testing {

/// Thrown by a step when nothing can ever happen again, or after a virtual hour; it ends the
/// test as a failure.
struct Waits_for_ever : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// An event loop in virtual time: a wait costs nothing. Events and timers run in the order of their
/// due times, then of posting.
class Virtual_loop : public Event_loop {
  public:
    /// What is due next, time going on to it if need be, and a round of the tasks.
    void step() {
        const bool woken = std::exchange(woken_, false);
        if (!run_one_due() && !woken) {
            const Clock_time timer = timers().next_due().value_or(Clock_time::max());
            const Clock_time event = events_.empty() ? timer : events_.begin()->first;
            const Clock_time next = std::min(timer, event);
            if (next > longest) {
                throw Waits_for_ever("waits for ever: nothing is due within a virtual hour");
            }
            now_ = std::max(now_, next);
            run_one_due();
        }
        woken_ = resume_tasks() || woken_;
    }
    void wake() override { woken_ = true; }
    [[nodiscard]] Clock_time now() const override { return now_; }

    /// What takes longer waits for ever.
    Clock_time longest = std::chrono::hours(1);

    /// Runs `event` at a time, or after a span from now.
    void at(Clock_time when, std::function<void()> event) {
        events_.emplace(std::max(when, now_), std::move(event));
    }
    void after(Clock_time span, std::function<void()> event) { at(now_ + span, std::move(event)); }
    /// Lets the span pass, running what falls due.
    void run_for(Clock_time span) {
        bool passed = false;
        after(span, [&passed] { passed = true; });
        run_until([&passed] { return passed; });
    }
    /// Waits for a condition.
    void run_until(const std::function<bool()>& condition) {
        while (!condition()) {
            step();
        }
    }
    /// Runs a task to its end; what it returns.
    template <typename T>
    T run(Task<T> task) {
        std::optional<T> result;
        run(into(result, std::move(task)));
        return std::move(*result);
    }
    void run(Task<> task) {
        Task_keeper keeper(*this);
        keeper.start(std::move(task));
        run_until([&keeper] { return keeper.empty(); });
    }

  private:
    template <typename T>
    static Task<> into(std::optional<T>& result, Task<T> task) {
        result = co_await task;
    }
    bool run_one_due() {
        const bool event_due = !events_.empty() && events_.begin()->first <= now_;
        if (!event_due || timers().next_due().value_or(now_) < events_.begin()->first) {
            return timers().run_next(now_);
        }
        events_.extract(events_.begin()).mapped()();
        return true;
    }

    Clock_time now_{};
    std::multimap<Clock_time, std::function<void()>> events_;
    bool woken_ = false;
};

}  // namespace kelvane::testing
