#include "platform/event_loop.h"

#include <algorithm>
#include <utility>

#include "platform/task_keeper.h"

namespace kelvane {

void Timer_queue::start(Timer& timer, Clock_time due) {
    std::erase_if(entries_, [&](const Entry& entry) { return entry.timer == &timer; });
    entries_.push_back({&timer, due, next_order_++});
    changed();
}

void Timer_queue::stop(const Timer& timer) {
    std::erase_if(entries_, [&](const Entry& entry) { return entry.timer == &timer; });
    changed();
}

std::vector<Timer_queue::Entry>::const_iterator Timer_queue::first() const {
    return std::min_element(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
        return a.due != b.due ? a.due < b.due : a.order < b.order;
    });
}

std::optional<Clock_time> Timer_queue::next_due() const {
    const auto next = first();
    return next == entries_.end() ? std::nullopt : std::optional(next->due);
}

bool Timer_queue::run_next(Clock_time now) {
    const auto next = first();
    if (next == entries_.end() || next->due > now) {
        return false;
    }
    Timer& timer = *next->timer;
    start(timer, now + std::chrono::milliseconds(timer.interval()));
    if (timer.on_tick) {
        timer.on_tick();
    }
    return true;
}

void Timer_queue::changed() const {
    if (on_changed) {
        on_changed();
    }
}

bool Event_loop::resume_tasks() {
    bool progress = false;
    const std::uint64_t round = waiting_.begin_round();
    while (const std::coroutine_handle<> task = waiting_.take(round)) {
        try {
            resume(task);
        } catch (...) {
            wake();  // for the rest of the round
            throw;
        }
        progress = progress || !waiting_.waits_again(task);
    }
    return progress;
}

void Event_loop::resume(std::coroutine_handle<> task) {
    ++running_;
    task.resume();  // what a task throws stays in it until it is asked for
    --running_;
    end_tasks();
}

/// Tasks that nobody awaits end here and nowhere else, while none is running.
void Event_loop::end_tasks() {
    if (running_ > 0) {
        return;
    }
    std::exchange(ending_, {}).clear();
    // By index: what ends here may bring keepers or take them away.
    for (std::size_t i = 0; i < keepers_.size(); ++i) {  // NOLINT(modernize-loop-convert)
        keepers_[i]->drop_done();
    }
}

Timer::Timer(Event_loop& loop, int interval_ms) : loop_(loop), interval_ms_(interval_ms) {}

Timer::~Timer() {
    if (enabled_) {
        loop_.timers().stop(*this);
    }
}

void Timer::set_interval(int milliseconds) {
    interval_ms_ = milliseconds;
    if (enabled_) {
        set_enabled(true);
    }
}

void Timer::set_enabled(bool enabled) {
    const bool was_enabled = enabled_;
    enabled_ = enabled;
    if (enabled && interval_ms_ > 0) {
        loop_.timers().start(*this, loop_.now() + std::chrono::milliseconds(interval_ms_));
    } else if (was_enabled) {
        loop_.timers().stop(*this);
    }
}

}  // namespace kelvane
