#include "desktop/qt_event_loop.h"

#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "platform/task_keeper.h"
#include "qt_test_application.h"

namespace kelvane {
namespace {

using namespace std::chrono_literals;

/// Timers that write their letter down at each tick.
class Qt_event_loop_test : public ::testing::Test {
  protected:
    Qt_event_loop loop;
    std::string ticks;

    std::unique_ptr<Timer> timer(
        char letter, int interval_ms, const std::function<void(Timer&)>& tick = [](Timer&) {}) {
        auto made = std::make_unique<Timer>(loop, interval_ms);
        made->on_tick = [this, letter, tick, self = made.get()] {
            ticks += letter;
            tick(*self);
        };
        made->set_enabled(true);
        return made;
    }
};

TEST_F(Qt_event_loop_test, timers_run_inside_a_dialogs_own_loop_that_a_handler_has_opened) {
    QEventLoop inner;
    QEventLoop outer;
    const auto opener = timer('(', 5, [&](Timer& self) {
        self.set_enabled(false);
        const auto a = timer('a', 5, [&](Timer&) { ticks.size() < 3 ? void() : inner.exit(); });
        inner.exec();
        outer.exit();
    });
    outer.exec();
    EXPECT_EQ(ticks, "(aa");
}

/// Waits until `condition` holds; the loop's own rounds do the rest.
Task<> wait_until(Event_loop& loop, std::function<bool()> condition, std::string& log, char mark) {
    while (!condition()) {
        log += '.';
        co_await loop.next();
    }
    log += mark;
    QCoreApplication::exit();
}

TEST_F(Qt_event_loop_test, tasks_go_on_after_each_batch_of_the_applications_own_loop) {
    Task_keeper keeper(loop);
    const auto a = timer('a', 1, [](Timer& self) { self.set_enabled(false); });
    keeper.start(wait_until(
        loop, [this] { return ticks.find('a') != std::string::npos; }, ticks, 'T'));
    QCoreApplication::exec();
    EXPECT_TRUE(ticks.ends_with("aT")) << ticks;

    bool pressed = false;
    QTimer::singleShot(0, [&pressed] { pressed = true; });
    keeper.start(wait_until(
        loop, [&pressed] { return pressed; }, ticks, 'P'));
    QCoreApplication::exec();
    EXPECT_TRUE(ticks.ends_with('P'));
}

TEST_F(Qt_event_loop_test, tasks_sleep_no_longer_than_the_port_says_and_not_at_all_for_nothing) {
    Task_keeper keeper(loop);
    const Clock_time start = loop.now();
    loop.sleep_limit = [] { return std::optional<Clock_time>(300us); };
    keeper.start(wait_until(
        loop, [&] { return loop.now() > start + 3ms; }, ticks, 'T'));
    QCoreApplication::exec();
    EXPECT_LE(ticks.size(), 30U) << "it has looked much more often than the port has said";
    EXPECT_TRUE(ticks.ends_with('T'));
}

TEST_F(Qt_event_loop_test, a_wait_for_what_may_never_come_wakes_ten_times_a_second_at_most) {
    Task_keeper keeper(loop);
    const auto end = timer('e', 1000);
    keeper.start(wait_until(
        loop, [this] { return ticks.find('e') != std::string::npos; }, ticks, 'T'));
    QCoreApplication::exec();
    EXPECT_LE(ticks.size(), 12U) << ticks;
}

TEST_F(Qt_event_loop_test, a_task_that_breathes_lets_timers_windows_and_other_tasks_in) {
    Task_keeper keeper(loop);
    bool window_event = false;
    QTimer::singleShot(0, [&] { window_event = true; });
    const auto a = timer('a', 1);
    const auto breathe = [](Event_loop& its_loop, const bool& event,
                            const std::string& log) -> Task<> {
        while (!event || log.find('a') == std::string::npos) {
            co_await its_loop.breath();
        }
    };
    keeper.start(breathe(loop, window_event, ticks));
    Task_keeper watcher(loop);
    watcher.start(wait_until(
        loop, [&keeper] { return keeper.empty(); }, ticks, 'T'));
    QCoreApplication::exec();
    EXPECT_TRUE(ticks.ends_with('T'));
}

}  // namespace
}  // namespace kelvane
