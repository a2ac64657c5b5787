#include "desktop/qt_event_loop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <algorithm>
#include <cstdint>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace kelvane {

namespace {

using namespace std::chrono_literals;

/// The port is served on time although a computer wakes up late: it is woken earlier by its usual
/// delay, and what is left then is waited out. A character takes 87 us at 115200 baud; more than
/// that would cost more of the processor than it brings.
constexpr Clock_time most_early = 80us;
/// The usual delay follows a change within some twenty wake-ups; a delay longer than this is none
/// of waking up, but of other work.
constexpr int delays_averaged = 16;
constexpr std::chrono::nanoseconds longest_delay = 200us;
/// So often a working loop lets windows repaint, buttons be pressed and other tasks go on.
constexpr Clock_time longest_stretch = 5ms;

itimerspec after(Clock_time delay) {
    // A delay of zero would switch the timer off.
    const auto nanoseconds = std::chrono::nanoseconds(std::max(delay, Clock_time(1))).count();
    itimerspec setting{};
    setting.it_value.tv_sec = static_cast<time_t>(nanoseconds / 1'000'000'000);
    setting.it_value.tv_nsec = static_cast<long>(nanoseconds % 1'000'000'000);
    return setting;
}

QEvent::Type round_event() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

}  // namespace

/// Sees every event before it is delivered, and has a round of the tasks follow the batch.
class Qt_event_loop::Rounds : public QObject {
  public:
    explicit Rounds(Qt_event_loop& loop) : loop_(loop) {
        QCoreApplication::instance()->installEventFilter(this);
    }
    void ask() {
        if (!std::exchange(asked_, true)) {
            QCoreApplication::postEvent(this, new QEvent(round_event()), Qt::LowEventPriority);
        }
    }
    bool eventFilter(QObject* watched, QEvent* /*event*/) override {
        if (watched != this) {
            ask();
        }
        return false;
    }
    bool event(QEvent* event) override {
        if (event->type() != round_event()) {
            return QObject::event(event);
        }
        asked_ = false;
        loop_.resume_round();
        return true;
    }

  private:
    Qt_event_loop& loop_;
    bool asked_ = false;
};

Qt_event_loop::Qt_event_loop()
    : start_(std::chrono::steady_clock::now()),
      timer_handle_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      wake_(std::make_unique<QSocketNotifier>(timer_handle_, QSocketNotifier::Read)),
      rounds_(std::make_unique<Rounds>(*this)) {
    breath_interval = longest_stretch;
    QObject::connect(wake_.get(), &QSocketNotifier::activated, [this] { wake_timer_fired(); });
    timers().on_changed = [this] { set_wake_timer(); };
}

Qt_event_loop::~Qt_event_loop() {
    timers().on_changed = nullptr;
    wake_.reset();
    ::close(timer_handle_);
}

Clock_time Qt_event_loop::now() const {
    return std::chrono::duration_cast<Clock_time>(std::chrono::steady_clock::now() - start_);
}

void Qt_event_loop::wake() {
    rounds_->ask();
}

void Qt_event_loop::resume_round() {
    if (!tasks_wait()) {
        return;
    }
    if (resume_tasks()) {
        wake();
        return;
    }
    const auto sleep = sleep_limit ? sleep_limit() : std::nullopt;
    if (sleep && *sleep <= 0ms) {
        wake();
    } else if (sleep) {
        sleep_end_ = now() + *sleep;
        set_wake_timer();
    }
}

/// Each timer that is due now runs once; one that falls due meanwhile waits for the next round.
bool Qt_event_loop::run_due_timers() {
    const Clock_time round = now();
    bool any = false;
    while (timers().run_next(round)) {
        any = true;
    }
    return any;
}

void Qt_event_loop::set_wake_timer() {
    std::optional<Clock_time> wake = timers().next_due();
    if (sleep_end_ && (!wake || *sleep_end_ < *wake)) {
        const auto early = std::chrono::duration_cast<Clock_time>(usual_delay_);
        wake = *sleep_end_ - std::min(early, most_early);
    }
    const Clock_time asked_at = now();
    wake_at_ = std::max(wake.value_or(asked_at), asked_at);
    const itimerspec setting = wake ? after(wake_at_ - asked_at) : itimerspec{};
    ::timerfd_settime(timer_handle_, 0, &setting, nullptr);
}

void Qt_event_loop::wait_out_the_rest() const {
    if (sleep_end_ && *sleep_end_ - now() <= most_early) {
        while (now() < *sleep_end_) {
        }
    }
}

void Qt_event_loop::wake_timer_fired() {
    std::uint64_t expirations = 0;
    if (::read(timer_handle_, &expirations, sizeof expirations) > 0) {
        const std::chrono::nanoseconds delay =
            std::clamp<std::chrono::nanoseconds>(now() - wake_at_, 0ns, longest_delay);
        usual_delay_ += (delay - usual_delay_) / delays_averaged;
        wait_out_the_rest();
        sleep_end_.reset();
        run_due_timers();
        set_wake_timer();
    }
}

}  // namespace kelvane
