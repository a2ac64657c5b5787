#pragma once

#include <QObject>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "platform/event_loop.h"

class QSocketNotifier;

namespace kelvane {

/// The event loop on Qt's dispatcher: the application's own, which it runs in alone. The timers run
/// wherever window events are handled, also in a loop that a system dialog may run. One kernel
/// timer wakes the dispatcher, because Qt's timers count whole milliseconds and a fast line wants
/// parts of one. Tasks go on after each batch of events, in an event of their own, so that what
/// leaves a task as an exception meets the trap of all events.
///
/// Made after the application object; there is one.
class Qt_event_loop : public Event_loop {
  public:
    Qt_event_loop();
    ~Qt_event_loop() override;

    void wake() override;
    [[nodiscard]] Clock_time now() const override;

    /// Asked when tasks wait, before the loop sleeps: how long nothing is due on the port; no value
    /// when nothing is going on there. 0 or less forbids the sleep.
    std::function<std::optional<Clock_time>()> sleep_limit;

  private:
    class Rounds;
    void resume_round();
    bool run_due_timers();
    void set_wake_timer();
    void wake_timer_fired();
    void wait_out_the_rest() const;

    std::chrono::steady_clock::time_point start_;
    int timer_handle_;
    std::unique_ptr<QSocketNotifier> wake_;
    std::unique_ptr<Rounds> rounds_;
    std::optional<Clock_time> sleep_end_;
    Clock_time wake_at_{};                    ///< for which the timer is set
    std::chrono::nanoseconds usual_delay_{};  ///< of a wake-up behind its time, learned
};

}  // namespace kelvane
