#include "session/running_work.h"

#include <utility>

namespace kelvane {

Running_work::Running_work(Event_loop& loop) : retry_(loop, 1) {
    retry_.on_tick = [this] { run_waiting(); };
}

void Running_work::run_when_done(std::function<void()> command) {
    if (any()) {
        waiting_ = std::move(command);
    } else {
        command();
    }
}

void Running_work::forget() {
    waiting_ = nullptr;
    retry_.set_enabled(false);
}

void Running_work::leave() {
    --depth_;
    if (depth_ == 0 && waiting_) {
        retry_.set_enabled(true);
    }
}

void Running_work::run_waiting() {
    retry_.set_enabled(false);
    if (!any() && waiting_) {
        std::exchange(waiting_, nullptr)();
    }
}

}  // namespace kelvane
