#include "desktop/paced_refresh.h"

#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

constexpr qint64 shortest_interval = 40;  // ms
constexpr qint64 longest_interval = 500;
/// Of so much time, showing changes may take one part.
constexpr qint64 cost_share = 200;
constexpr qint64 nanoseconds_per_ms = 1'000'000;

}  // namespace

Paced_refresh::Paced_refresh(std::function<void()> refresh) : refresh_(std::move(refresh)) {
    later_.setSingleShot(true);
    QObject::connect(&later_, &QTimer::timeout, [this] { run(); });
}

void Paced_refresh::request() {
    if (later_.isActive()) {
        return;
    }
    const qint64 rest = since_last_.isValid() ? interval() - since_last_.elapsed() : 0;
    if (rest <= 0) {
        run();
    } else {
        later_.start(static_cast<int>(rest));
    }
}

void Paced_refresh::run() {
    since_last_.start();
    refresh_();
    cost_ = since_last_.nsecsElapsed();
}

/// From one refresh to the next, milliseconds.
qint64 Paced_refresh::interval() const {
    return std::clamp(cost_ * cost_share / nanoseconds_per_ms, shortest_interval, longest_interval);
}

}  // namespace kelvane
