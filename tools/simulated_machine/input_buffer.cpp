#include "simulated_machine/input_buffer.h"

namespace kelvane::simulated {

Input_buffer::Input_buffer(std::size_t size, double drain)
    : size_(size),
      use_time_(drain > 0 ? std::chrono::nanoseconds(static_cast<long long>(1e9 / drain))
                          : Duration::zero()) {}

std::size_t Input_buffer::level(Time at) {
    while (level_ > 0 && next_use_ <= at) {
        --level_;
        next_use_ += use_time_;
    }
    return level_;
}

bool Input_buffer::put(Time at) {
    if (use_time_ == Duration::zero()) {
        return true;
    }
    if (level(at) >= size_) {
        return false;
    }
    if (level_ == 0) {
        next_use_ = at + use_time_;
    }
    ++level_;
    return true;
}

Time Input_buffer::when_down_to(std::size_t level) const {
    if (level_ <= level) {
        return next_use_;
    }
    return next_use_ + use_time_ * static_cast<long>(level_ - level - 1);
}

}  // namespace kelvane::simulated
