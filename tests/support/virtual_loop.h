#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <utility>

#include "platform/event_loop.h"

namespace kelvane::testing {

/// Thrown out of a yield when nothing can ever happen again, or after a virtual hour; it ends the
/// test as a failure.
struct Waits_for_ever : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// An event loop in virtual time: a wait costs nothing. Events and timers run in the order of their
/// due times, then of posting; nested waits are fine.
class Virtual_loop : public Event_loop {
  public:
    void process_events() override;
    void process_pending() override;
    [[nodiscard]] Clock_time now() const override { return now_; }

    /// Runs `event` at a time, or after a span from now.
    void at(Clock_time when, std::function<void()> event);
    void after(Clock_time span, std::function<void()> event) { at(now_ + span, std::move(event)); }
    /// Lets the span pass, running what falls due.
    void run_for(Clock_time span);
    /// Waits for a condition.
    void run_until(const std::function<bool()>& condition);
    /// Yields of both kinds so far.
    [[nodiscard]] unsigned long yields() const { return yields_; }

  private:
    bool run_one_due();
    [[nodiscard]] Clock_time next_due();

    Clock_time now_{};
    std::multimap<Clock_time, std::function<void()>> events_;
    unsigned long yields_ = 0;
};

}  // namespace kelvane::testing
