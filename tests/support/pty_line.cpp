#include "support/pty_line.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace kelvane::testing {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

Pty_line::Pty_line() : machine_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    if (machine_ < 0 || ::grantpt(machine_) != 0 || ::unlockpt(machine_) != 0) {
        throw std::system_error(errno, std::generic_category(), "pseudo-terminal");
    }
    device_ = ::ptsname(machine_);
}

void Pty_line::hang_up() {
    if (machine_ >= 0) {
        ::close(machine_);
        machine_ = -1;
    }
}

// Without a partner a pseudo-terminal reports a hang-up at once and for ever.
bool Pty_line::wait_for(short events, std::chrono::milliseconds patience) const {
    const auto end = steady_clock::now() + patience;
    pollfd line{machine_, events, 0};
    do {
        ::poll(&line, 1, static_cast<int>(std::min(patience, 20ms).count()));
        if ((line.revents & events) != 0) {
            return true;
        }
        if ((line.revents & POLLHUP) != 0) {
            std::this_thread::sleep_for(std::min(patience, 2ms));
        }
    } while (steady_clock::now() < end);
    return false;
}

bool Pty_line::send(std::string_view bytes, std::chrono::milliseconds patience) {
    while (!bytes.empty() && wait_for(POLLOUT, patience)) {
        const ssize_t count = ::write(machine_, bytes.data(), bytes.size());
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return bytes.empty();
}

std::string Pty_line::receive(std::size_t count, std::chrono::milliseconds patience) {
    std::string received;
    while (received.size() < count && wait_for(POLLIN, patience)) {
        std::string block(std::min<std::size_t>(count - received.size(), 65536), '\0');
        const ssize_t got = ::read(machine_, block.data(), block.size());
        received.append(block, 0, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    }
    return received;
}

}  // namespace kelvane::testing
