#include "support/virtual_loop.h"

#include <algorithm>

namespace kelvane::testing {

namespace {

constexpr Clock_time longest_test = std::chrono::hours(1);
constexpr Clock_time never = Clock_time::max();

}  // namespace

void Virtual_loop::at(Clock_time when, std::function<void()> event) {
    events_.emplace(std::max(when, now_), std::move(event));
}

bool Virtual_loop::run_one_due() {
    const auto timer_due = timers().next_due();
    if (!events_.empty() && events_.begin()->first <= now_ &&
        (!timer_due || events_.begin()->first <= *timer_due)) {
        const auto event = std::move(events_.begin()->second);
        events_.erase(events_.begin());
        event();
        return true;
    }
    return timers().run_next(now_);
}

Clock_time Virtual_loop::next_due() {
    const Clock_time timer = timers().next_due().value_or(never);
    return events_.empty() ? timer : std::min(timer, events_.begin()->first);
}

void Virtual_loop::process_pending() {
    ++yields_;
    while (run_one_due()) {
    }
}

void Virtual_loop::process_events() {
    ++yields_;
    if (run_one_due()) {
        return;
    }
    const Clock_time next = next_due();
    if (next == never) {
        throw Waits_for_ever("waits for ever: nothing is due");
    }
    if (next > longest_test) {
        throw Waits_for_ever("waits for ever: a virtual hour has passed");
    }
    now_ = std::max(now_, next);
    run_one_due();
}

void Virtual_loop::run_for(Clock_time span) {
    bool passed = false;
    after(span, [&passed] { passed = true; });
    run_until([&passed] { return passed; });
}

void Virtual_loop::run_until(const std::function<bool()>& condition) {
    while (!condition()) {
        process_events();
    }
}

}  // namespace kelvane::testing
