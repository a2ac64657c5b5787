#include "simulated_machine/flow.h"

namespace kelvane::simulated {

Flow::Flow(const Options& options, Line& line)
    : line_(line),
      xon_(control_byte(Control::xon, options.code)),
      xoff_(control_byte(Control::xoff, options.code)),
      silent_(options.silent),
      limit_(options.alarm_after + options.fifo) {}

void Flow::hold() {
    line_.send(xoff_);
    holding_ = true;
    reached_.reset();
    after_.push_back(0);
}

void Flow::release() {
    if (silent_) {
        return;
    }
    note_delivery();
    line_.send(xon_);
    released_at_ = Clock::now();
    held_ += reached_ ? released_at_ - *reached_ : Duration::zero();
    holding_ = false;
}

void Flow::note_delivery() {
    if (!reached_ && line_.unsent() == 0) {
        reached_ = line_.last_sent();
    }
}

bool Flow::count(Time arrival) {
    if (!holding_) {
        return true;
    }
    note_delivery();
    if (reached_ && arrival > *reached_) {
        ++after_.back();
    }
    return after_.back() <= limit_;
}

}  // namespace kelvane::simulated
