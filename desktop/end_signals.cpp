#include "desktop/end_signals.h"

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace kelvane {

namespace {

/// An orderly end takes some hundredths of a second, so this is for a program that hangs.
constexpr itimerspec patience{{0, 0}, {1, 500'000'000}};

/// A signal handler may do next to nothing; writing to a pipe and setting a timer are allowed.
std::array<int, 2> pipe_ends{-1, -1};
timer_t deadline{};
volatile std::sig_atomic_t end_signal = 0;

extern "C" void note_signal(int signal) {
    const char mark = 1;
    // A full pipe says already what there is to say.
    [[maybe_unused]] const ssize_t written = ::write(pipe_ends[1], &mark, 1);
    if (end_signal == 0) {
        end_signal = signal;
        ::timer_settime(deadline, 0, &patience, nullptr);
    }
}

extern "C" void end_at_once(int /*signal*/) {
    const int signal = end_signal;
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

void drain(int handle) {
    std::array<char, 16> marks{};
    while (::read(handle, marks.data(), marks.size()) > 0) {
    }
}

}  // namespace

void on_end_signals(QObject& owner, std::function<void()> close) {
    if (pipe_ends[0] < 0 && ::pipe2(pipe_ends.data(), O_NONBLOCK | O_CLOEXEC) != 0) {
        return;
    }
    auto* notifier = new QSocketNotifier(pipe_ends[0], QSocketNotifier::Read, &owner);
    QObject::connect(notifier, &QSocketNotifier::activated, [close = std::move(close)] {
        drain(pipe_ends[0]);
        close();
    });
    sigevent expiry{};
    expiry.sigev_notify = SIGEV_SIGNAL;
    expiry.sigev_signo = SIGALRM;
    ::timer_create(CLOCK_MONOTONIC, &expiry, &deadline);
    handle(SIGALRM, end_at_once);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        handle(signal, note_signal);
    }
}

}  // namespace kelvane
