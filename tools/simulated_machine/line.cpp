#include "simulated_machine/line.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <poll.h>
#include <sched.h>
#include <span>
#include <utility>

namespace kelvane::simulated {

std::atomic<bool> end_requested{false};
std::atomic<bool> punch_requested{false};
std::atomic<bool> read_requested{false};

namespace {

using std::chrono::milliseconds;

// Bytes on the line and in the shift register's neighbourhood; the rest stays with the partner.
constexpr std::size_t read_ahead = 16;
// A partner that is absent cannot be waited for, only looked for.
constexpr milliseconds look_interval{20};

void on_signal(int number) {
    switch (number) {
        case SIGUSR1:
            punch_requested = true;
            break;
        case SIGUSR2:
            read_requested = true;
            break;
        default:
            end_requested = true;
    }
}

sigset_t signals_while_waiting() {
    sigset_t none;
    sigemptyset(&none);
    return none;
}

Duration time_of_character(const Line_settings& settings) {
    const long long bits = 9 + settings.stop_bits;
    return std::chrono::nanoseconds((bits * 1'000'000'000 + settings.baud - 1) / settings.baud);
}

}  // namespace

void run_punctually() {
    const sched_param least{::sched_get_priority_min(SCHED_RR)};
    static_cast<void>(::sched_setscheduler(0, SCHED_RR, &least));
}

void catch_signals(bool with_orders) {
    sigset_t blocked;
    sigemptyset(&blocked);
    struct sigaction action {};
    action.sa_handler = on_signal;
    for (const int number : {SIGTERM, SIGINT, SIGUSR1, SIGUSR2}) {
        if (with_orders || number == SIGTERM || number == SIGINT) {
            sigaddset(&blocked, number);
            ::sigaction(number, &action, nullptr);
        }
    }
    ::sigprocmask(SIG_BLOCK, &blocked, nullptr);
}

Line::Line(Pseudo_terminal& terminal, const Line_settings& settings)
    : terminal_(terminal), settings_(settings), character_time_(time_of_character(settings)) {}

void Line::watch(int descriptor, std::function<bool()> interruption) {
    watched_ = descriptor;
    interruption_ = std::move(interruption);
}

std::optional<Outcome> Line::wait(Time until) {
    sleep_until(std::min({until, next_event(), settings_.deadline}));
    take_from_terminal();
    release_due();
    return end_reason();
}

bool Line::cut() const {
    return settings_.hang_up_after > 0 && passed_ >= settings_.hang_up_after;
}

bool Line::room() const {
    return arrivals_.size() < read_ahead;
}

Time Line::next_event() const {
    Time next = cut() ? Time{} : never;
    if (!arrivals_.empty()) {
        const std::size_t refill = room() ? arrivals_.size() : read_ahead / 2;
        const std::size_t count = std::min(std::max<std::size_t>(look_after_, 1), refill);
        next = std::min(next, arrivals_[count - 1].at);
    }
    if (!departures_.empty() && !blocked_) {
        // Several characters a step; the last of the step is on time.
        const auto step = static_cast<std::size_t>(milliseconds(4) / character_time_);
        const std::size_t count = std::clamp<std::size_t>(step, 1, departures_.size());
        next = std::min(next, departures_[count - 1].at);
    }
    return next;
}

void Line::sleep_until(Time until) {
    if (!present_) {
        until = std::min(until, Clock::now() + look_interval);
    }
    const auto events = static_cast<short>((room() ? POLLIN : 0) | (blocked_ ? POLLOUT : 0));
    std::array<pollfd, 2> watched{
        {{present_ ? terminal_.descriptor() : -1, events, 0}, {watched_, POLLIN, 0}}};
    timespec timeout{};
    const timespec* limit = nullptr;
    if (settings_.attentive) {
        limit = &timeout;
    } else if (until != never) {
        const auto left = std::max(Duration::zero(), until - Clock::now());
        timeout.tv_sec = static_cast<time_t>(left.count() / 1'000'000'000);
        timeout.tv_nsec = static_cast<long>(left.count() % 1'000'000'000);
        limit = &timeout;
    }
    const sigset_t open_to = signals_while_waiting();
    const Time due = std::max(until, Clock::now());
    const int count = ::ppoll(watched.data(), watched.size(), limit, &open_to);
    if (count > 0 && (watched[0].revents & POLLOUT) != 0) {
        blocked_ = false;
    }
    late_ = std::max(late_, Clock::now() - due);
    look_for_partner(terminal_.partner_present());
}

void Line::look_for_partner(bool present) {
    if (present && !present_) {
        ++sessions_;
    }
    present_ = present;
    blocked_ = blocked_ && present;
}

// While characters are on the line the machine wakes at the end of the last one at the latest, so
// what is found later still joined it: that the machine overslept is not the partner's fault.
void Line::take_from_terminal() {
    if (!room()) {
        return;
    }
    const bool joins = !arrivals_.empty();
    std::array<std::uint8_t, read_ahead> bytes{};
    const std::size_t count = terminal_.read(std::span(bytes).first(read_ahead - arrivals_.size()));
    const Time now = Clock::now();
    for (const std::uint8_t byte : std::span(bytes).first(count)) {
        arrivals_free_ = (joins ? arrivals_free_ : std::max(arrivals_free_, now)) + character_time_;
        arrivals_.push_back({byte, arrivals_free_});
    }
}

std::optional<Arrival> Line::peek() const {
    const bool arrived = !cut() && !arrivals_.empty() && arrivals_.front().at <= Clock::now();
    return arrived ? std::optional(arrivals_.front()) : std::nullopt;
}

std::optional<Arrival> Line::take() {
    std::optional<Arrival> arrival = peek();
    if (arrival) {
        arrivals_.pop_front();
        ++passed_;
    }
    return arrival;
}

void Line::send(std::uint8_t byte) {
    const Time now = Clock::now();
    const bool paced = !settings_.unpaced_sending;
    departures_free_ = paced ? std::max(departures_free_, now) + character_time_ : now;
    departures_.push_back({byte, departures_free_});
}

std::size_t Line::withdraw() {
    const std::size_t count = departures_.size();
    departures_.clear();
    departures_free_ = Clock::now();
    return count;
}

// Without a partner the bytes are lost, as on any line.
void Line::release_due() {
    std::array<std::uint8_t, 4096> bytes{};
    const Time now = Clock::now();
    const std::size_t most = settings_.hang_up_after > passed_
                                 ? std::min(bytes.size(), settings_.hang_up_after - passed_)
                                 : bytes.size();
    std::size_t due = 0;
    while (due < departures_.size() && due < most && departures_[due].at <= now) {
        bytes[due] = departures_[due].byte;
        ++due;
    }
    if (due == 0 || blocked_) {
        return;
    }
    const std::size_t taken = present_ ? terminal_.write(std::span(bytes).first(due)) : due;
    blocked_ = taken < due;
    departures_.erase(departures_.begin(),
                      departures_.begin() + static_cast<std::ptrdiff_t>(taken));
    passed_ += taken;
    last_sent_ = Clock::now();
}

std::optional<Outcome> Line::end_reason() {
    if (cut()) {
        terminal_.close();
        return Outcome::hung_up;
    }
    if (end_requested || (interruption_ && interruption_())) {
        return Outcome::stopped;
    }
    return Clock::now() >= settings_.deadline ? std::optional(Outcome::timed_out) : std::nullopt;
}

}  // namespace kelvane::simulated
