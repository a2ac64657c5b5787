#include "desktop/cts_watch.h"

#include <chrono>

namespace kelvane {

namespace {

constexpr Clock_time longest_belief = std::chrono::milliseconds(100);

}  // namespace

void Cts_watch::start(bool counted) {
    *this = Cts_watch();
    count_ = counted ? Count::kept : Count::unproved;
}

bool Cts_watch::must_ask(std::optional<int> changes, Clock_time now) const {
    const bool believed = count_ == Count::kept && changes && changes == changes_;
    return !believed || !clear_ || now - asked_at_ >= longest_belief;
}

void Cts_watch::asked(std::optional<int> changes, bool clear, Clock_time now) {
    if (ever_asked_ && count_ != Count::not_kept) {
        if (changes != changes_) {
            count_ = Count::kept;
        } else if (clear != clear_) {
            count_ = Count::not_kept;
        }
    }
    changes_ = changes;
    clear_ = clear;
    ever_asked_ = true;
    asked_at_ = now;
}

}  // namespace kelvane
