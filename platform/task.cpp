#include "platform/task.h"

#include <algorithm>

namespace kelvane {

Waiter::~Waiter() {
    if (list_ != nullptr) {
        std::erase(list_->waiters_, this);
    }
}

Wait_list::~Wait_list() {
    for (Waiter* waiter : waiters_) {
        waiter->list_ = nullptr;
    }
}

void Wait_list::add(Waiter& waiter, std::coroutine_handle<> task) {
    waiter.list_ = this;
    waiter.task_ = task;
    waiter.again_ = waiter.round_ > 0;
    waiter.round_ = round_;
    waiters_.push_back(&waiter);
}

std::coroutine_handle<> Wait_list::take(std::uint64_t round) {
    if (waiters_.empty() || waiters_.front()->round_ >= round) {
        return nullptr;
    }
    Waiter& first = *waiters_.front();
    waiters_.erase(waiters_.begin());
    first.list_ = nullptr;
    return first.task_;
}

bool Wait_list::waits_again(std::coroutine_handle<> task) const {
    return !waiters_.empty() && waiters_.back()->task_ == task && waiters_.back()->again_;
}

}  // namespace kelvane
