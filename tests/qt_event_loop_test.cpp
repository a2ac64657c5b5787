#include "desktop/qt_event_loop.h"

#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "qt_test_application.h"

namespace kelvane {
namespace {

using namespace std::chrono_literals;

/// Timers that write their letter down at each tick.
class Qt_event_loop_test : public ::testing::Test {
  protected:
    Qt_event_loop loop;
    std::string ticks;

    std::unique_ptr<Timer> timer(char letter, int interval_ms) {
        auto made = std::make_unique<Timer>(loop, interval_ms);
        made->on_tick = [this, letter] { ticks += letter; };
        made->set_enabled(true);
        return made;
    }
    void wait_for_ticks(std::size_t count) {
        while (ticks.size() < count) {
            loop.process_events();
        }
    }
};

TEST_F(Qt_event_loop_test, timers_run_in_the_order_in_which_they_fall_due) {
    const auto c = timer('c', 30);
    const auto a = timer('a', 10);
    const auto b = timer('b', 20);
    c->on_tick = [&] { ticks += "c"; };
    a->on_tick = [&] {
        a->set_enabled(false);
        ticks += "a";
    };
    b->on_tick = [&] {
        b->set_enabled(false);
        ticks += "b";
    };
    wait_for_ticks(4);
    EXPECT_EQ(ticks, "abcc");
}

TEST_F(Qt_event_loop_test, a_timer_runs_inside_a_dialogs_own_loop) {
    QEventLoop dialog;
    const auto a = timer('a', 5);
    a->on_tick = [&] {
        ticks += 'a';
        if (ticks.size() == 3) {
            dialog.exit();
        }
    };
    dialog.exec();
    EXPECT_EQ(ticks, "aaa");
}

TEST_F(Qt_event_loop_test, a_handler_may_wait_and_other_timers_run_meanwhile) {
    const auto b = timer('b', 5);
    const auto a = timer('a', 10);
    a->on_tick = [&] {
        a->set_enabled(false);
        ticks += '(';
        wait_for_ticks(ticks.size() + 2);
        ticks += ')';
    };
    while (ticks.find(')') == std::string::npos) {
        loop.process_events();
    }
    EXPECT_NE(ticks.find("(bb)"), std::string::npos) << ticks;
}

TEST_F(Qt_event_loop_test, a_dialog_in_a_handler_does_not_stop_the_timers) {
    const auto a = timer('a', 5);
    QEventLoop inner;
    QEventLoop outer;
    const auto opener = timer('-', 7);
    opener->on_tick = [&] {
        opener->set_enabled(false);
        ticks.clear();
        a->on_tick = [&] {
            ticks += 'a';
            if (ticks.size() == 2) {
                inner.exit();
            }
        };
        inner.exec();
        outer.exit();
    };
    outer.exec();
    EXPECT_EQ(ticks, "aa");
}

TEST_F(Qt_event_loop_test, a_sleep_keeps_to_the_ports_limit_and_to_due_timers) {
    const auto a = timer('a', 1000);
    int asked = 0;
    loop.sleep_limit = [&]() -> std::optional<Clock_time> {
        ++asked;
        return 300us;
    };
    QCoreApplication::processEvents();  // what is pending would end the sleep at once
    const Clock_time start = loop.now();
    loop.process_events();
    EXPECT_EQ(asked, 1);
    EXPECT_GE(loop.now() - start, 300us);
    loop.sleep_limit = [] { return std::optional<Clock_time>(0); };
    a->set_interval(1);
    wait_for_ticks(1);
}

TEST_F(Qt_event_loop_test, a_working_loop_lets_timers_and_windows_have_their_turn) {
    bool window_event = false;
    QTimer::singleShot(0, [&] { window_event = true; });
    const auto a = timer('a', 1);
    while (ticks.empty() || !window_event) {
        loop.process_pending();
    }
    EXPECT_TRUE(window_event);
}

}  // namespace
}  // namespace kelvane
