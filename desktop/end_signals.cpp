#include "desktop/end_signals.h"

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace kelvane {

namespace {

/// A signal handler may do next to nothing; writing to a pipe is allowed.
std::array<int, 2> pipe_ends{-1, -1};

extern "C" void note_signal(int /*signal*/) {
    const char mark = 1;
    // A full pipe says already what there is to say.
    [[maybe_unused]] const ssize_t written = ::write(pipe_ends[1], &mark, 1);
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
    struct sigaction action {};
    action.sa_handler = note_signal;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace kelvane
