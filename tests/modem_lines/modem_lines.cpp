// Preloaded into the program: answers what a serial driver would be asked about modem lines and
// its output queue, for the one device that the shared state names.

#include "modem_lines/modem_lines.h"

#include <array>
#include <cstdarg>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using kelvane::testing::Modem_lines;

Modem_lines* map_state() {
    const char* name = std::getenv("KELVANE_MODEM_LINES");
    const int handle = name == nullptr ? -1 : ::open(name, O_RDWR | O_CLOEXEC);
    void* memory = handle < 0 ? MAP_FAILED
                              : ::mmap(nullptr, sizeof(Modem_lines), PROT_READ | PROT_WRITE,
                                       MAP_SHARED, handle, 0);
    ::close(handle);
    return memory == MAP_FAILED ? nullptr : static_cast<Modem_lines*>(memory);
}

Modem_lines* state() {
    static Modem_lines* const mapped = map_state();
    return mapped;
}

bool is_device(int handle) {
    std::array<char, 64> path{};
    const std::string link = "/proc/self/fd/" + std::to_string(handle);
    return state() != nullptr && ::readlink(link.c_str(), path.data(), path.size() - 1) > 0 &&
           path == state()->device;
}

/// True when the request is one for modem lines or the queue, and done.
bool answer(unsigned long request, void* argument) {
    auto* value = static_cast<int*>(argument);
    switch (request) {
        case TIOCMGET:
            ++state()->cts_looks;
            *value = state()->set_by_program | (state()->cts ? TIOCM_CTS : 0);
            return true;
        case TIOCMSET:
            state()->set_by_program = *value & (TIOCM_RTS | TIOCM_DTR);
            return true;
        case TIOCMBIS:
            state()->set_by_program |= *value;
            return true;
        case TIOCMBIC:
            state()->set_by_program &= ~*value;
            return true;
        case TIOCOUTQ:
            *value = state()->queued;
            return true;
        default:
            return false;
    }
}

}  // namespace

extern "C" int ioctl(int handle, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    if (is_device(handle) && answer(request, argument)) {
        return 0;
    }
    return static_cast<int>(::syscall(SYS_ioctl, handle, request, argument));
}
