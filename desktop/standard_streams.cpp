#include "desktop/standard_streams.h"

#include <QString>
#include <algorithm>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kelvane {

namespace {

/// Handles are given out from the lowest free one on; asked in order, each fills its own gap.
void fill_gap(int stream) {
    if (::fcntl(stream, F_GETFD) < 0) {
        static_cast<void>(::open("/dev/null", O_RDWR));
    }
}

/// Opens a pipe or terminal anew, to write without waiting: the handle that was inherited is shared
/// with the program that has started this one, which would find its own changed. One that cannot be
/// opened anew (a socket, another user's terminal) stays.
void stop_waiting_on(int stream) {
    struct stat kind {};
    const bool known = ::fstat(stream, &kind) == 0;
    if (!known || (!S_ISFIFO(kind.st_mode) && !S_ISCHR(kind.st_mode))) {
        return;
    }
    const std::string link = "/proc/self/fd/" + std::to_string(stream);
    const int own = ::open(link.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (own >= 0) {
        ::dup2(own, stream);
        ::close(own);
    }
}

bool has_room(int stream) {
    pollfd state{stream, POLLOUT, 0};
    return ::poll(&state, 1, 0) == 1 && (static_cast<unsigned>(state.revents) & POLLOUT) != 0;
}

void tell_qt_message(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    tell_standard_error(qFormatLogMessage(type, context, text).toStdString() + "\n");
}

}  // namespace

void guard_standard_streams() {
    std::signal(SIGPIPE, SIG_IGN);
    // A background job on a terminal that lets nobody but the job in front write.
    std::signal(SIGTTOU, SIG_IGN);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        fill_gap(stream);
    }
    stop_waiting_on(STDOUT_FILENO);
    stop_waiting_on(STDERR_FILENO);
    qInstallMessageHandler(tell_qt_message);
}

void tell_standard_error(std::string_view text) {
    // A pipe that has room at all has room for so much.
    while (!text.empty() && has_room(STDERR_FILENO)) {
        const ssize_t written =
            ::write(STDERR_FILENO, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (written <= 0) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace kelvane
