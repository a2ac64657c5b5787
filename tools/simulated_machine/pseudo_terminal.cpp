#include "simulated_machine/pseudo_terminal.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace kelvane::simulated {

namespace fs = std::filesystem;

bool Pseudo_terminal::fail(const std::string& what) {
    problem_ = what + ": " + std::strerror(errno);
    close();
    return false;
}

bool Pseudo_terminal::open(const std::string& link) {
    descriptor_ = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (descriptor_ < 0 || ::grantpt(descriptor_) != 0 || ::unlockpt(descriptor_) != 0) {
        return fail("no pseudo-terminal");
    }
    const char* name = ::ptsname(descriptor_);
    if (name == nullptr) {
        return fail("no name for the pseudo-terminal");
    }
    partner_path_ = name;
    return make_raw() && (link.empty() || make_link(link));
}

// Opening and closing the partner's end once also makes the system report it as absent from now on,
// which it does not for an end that was never open.
bool Pseudo_terminal::make_raw() {
    const int partner = ::open(partner_path_.c_str(), O_RDWR | O_NOCTTY);
    termios settings{};
    if (partner < 0 || ::tcgetattr(partner, &settings) != 0) {
        return fail(partner_path_);
    }
    ::cfmakeraw(&settings);
    const bool set = ::tcsetattr(partner, TCSANOW, &settings) == 0;
    ::close(partner);
    const int flags = ::fcntl(descriptor_, F_GETFL);
    if (!set || flags < 0 || ::fcntl(descriptor_, F_SETFL, flags | O_NONBLOCK) != 0 ||
        ::fcntl(descriptor_, F_SETFD, FD_CLOEXEC) != 0) {
        return fail(partner_path_);
    }
    return true;
}

bool Pseudo_terminal::make_link(const std::string& link) {
    std::error_code ignored;
    if (fs::read_symlink(link, ignored).string().starts_with("/dev/pts/")) {
        fs::remove(link, ignored);
    }
    if (::symlink(partner_path_.c_str(), link.c_str()) != 0) {
        return fail("cannot make the link " + link);
    }
    link_ = link;
    return true;
}

bool Pseudo_terminal::partner_present() const {
    pollfd state{descriptor_, 0, 0};
    return descriptor_ >= 0 && ::poll(&state, 1, 0) >= 0 && (state.revents & POLLHUP) == 0;
}

bool Pseudo_terminal::readable() const {
    pollfd state{descriptor_, POLLIN, 0};
    return descriptor_ >= 0 && ::poll(&state, 1, 0) > 0 && (state.revents & POLLIN) != 0;
}

std::size_t Pseudo_terminal::read(std::span<std::uint8_t> into) const {
    const ssize_t count = ::read(descriptor_, into.data(), into.size());
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

std::size_t Pseudo_terminal::write(std::span<const std::uint8_t> bytes) const {
    const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void Pseudo_terminal::close() {
    std::error_code ignored;
    if (!link_.empty() && fs::read_symlink(link_, ignored) == partner_path_) {
        fs::remove(link_, ignored);
    }
    link_.clear();
    if (descriptor_ >= 0) {
        ::close(descriptor_);
        descriptor_ = -1;
    }
}

}  // namespace kelvane::simulated
