// Answers what a serial driver would be asked, and keeps characters as an adapter would, for the
// one device that the shared state names. Preloaded into the program or linked with a test, it
// stands in front of the system's own calls.

#include "modem_lines/modem_lines.h"

#include <array>
// The kernel's own terminal settings, which know every speed; they exclude <termios.h>.
#include <algorithm>
#include <asm/termbits.h>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/serial.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace kelvane::testing {
namespace {

Modem_lines* map_state() {
    const char* name = std::getenv("KELVANE_MODEM_LINES");
    const int handle = name == nullptr ? -1 : ::open(name, O_RDWR | O_CLOEXEC);
    void* memory = handle < 0 ? MAP_FAILED
                              : ::mmap(nullptr, sizeof(Modem_lines), PROT_READ | PROT_WRITE,
                                       MAP_SHARED, handle, 0);
    ::syscall(SYS_close, handle);
    return memory == MAP_FAILED ? nullptr : static_cast<Modem_lines*>(memory);
}

Modem_lines*& state() {
    static Modem_lines* mapped = map_state();
    return mapped;
}

bool is_device(int handle) {
    std::array<char, 64> path{};
    const std::string link = "/proc/self/fd/" + std::to_string(handle);
    return state() != nullptr && ::readlink(link.c_str(), path.data(), path.size() - 1) > 0 &&
           path == state()->device;
}

double now_us() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

/// What a driver keeps of a frame, but no pseudo-terminal.
constexpr tcflag_t kept_by_drivers = CSIZE | PARENB;
tcflag_t kept_of_frame = CS8;

termios2 settings_of(int handle) {
    termios2 settings{};
    ::syscall(SYS_ioctl, handle, TCGETS2, &settings);
    settings.c_cflag = (settings.c_cflag & ~kept_by_drivers) | kept_of_frame;
    return settings;
}

int set_speed(int handle) {
    return static_cast<int>(settings_of(handle).c_ospeed);
}

char parity_letter(tcflag_t flags) {
    const bool odd = (flags & PARODD) != 0;
    if ((flags & PARENB) == 0) {
        return 'N';
    }
    return (flags & CMSPAR) != 0 ? (odd ? 'M' : 'S') : (odd ? 'O' : 'E');
}

void report_frame(int handle) {
    const termios2 settings = settings_of(handle);
    const int data_bits = 5 + static_cast<int>((settings.c_cflag & CSIZE) / CS6);
    const int stop_bits = (settings.c_cflag & CSTOPB) != 0 ? 2 : 1;
    std::snprintf(state()->frame.data(), state()->frame.size(), "%u %d%c%d", settings.c_ospeed,
                  data_bits, parity_letter(settings.c_cflag), stop_bits);
}

/// The characters that the adapter keeps, and when the last of them will have left.
class Shift_register {
  public:
    void take(int handle, int count) {
        let_leave();
        if (kept_ == 0) {
            speed_ = set_speed(handle);
            free_at_ = now_us() + state()->transmitter.delay_us;
        }
        kept_ += count;
        free_at_ += count * character_us();
        state()->transmitter.most_kept = std::max<int>(state()->transmitter.most_kept, kept_);
    }
    /// The characters still kept leave under the new settings.
    void set(int handle, bool dtr) {
        let_leave();
        speed_ = set_speed(handle);
        dtr_ = dtr;
        free_at_ = now_us() + kept_ * character_us();
    }
    void let_all_leave() {
        let_leave();
        report(kept_);
        kept_ = 0;
    }
    [[nodiscard]] bool empty() {
        let_leave();
        return kept_ == 0;
    }

  private:
    [[nodiscard]] double character_us() const {
        return 1e7 / std::max(speed_, 1) * (1 + state()->transmitter.clock_error);
    }
    void let_leave() {
        const double left = std::max(0.0, (free_at_ - now_us()) / character_us());
        const int still_kept = std::min(kept_, static_cast<int>(std::ceil(left)));
        report(kept_ - still_kept);
        kept_ = still_kept;
    }
    void report(int characters) const {
        auto& all = state()->departures;
        const int count = state()->departure_count;
        if (characters == 0) {
            return;
        }
        if (count > 0) {
            auto& last = all.at(static_cast<std::size_t>(count - 1));
            if (last.speed == speed_ && last.dtr == dtr_) {
                last.characters += characters;
                return;
            }
        }
        all.at(static_cast<std::size_t>(count)) = {speed_, dtr_, characters};
        state()->departure_count = count + 1;
    }

    int kept_ = 0;
    int speed_ = 0;
    bool dtr_ = false;
    double free_at_ = 0;
};

Shift_register transmitter;

void set_lines(int handle, int lines) {
    state()->set_by_program = lines;
    transmitter.set(handle, (lines & TIOCM_DTR) != 0);
}

bool answer_counts(void* argument) {
    auto& count = *static_cast<serial_icounter_struct*>(argument);
    count = {};
    count.cts = state()->cts_changes;
    count.frame = state()->framing;
    count.parity = state()->parity;
    count.overrun = state()->overrun;
    count.brk = state()->breaks;
    return state()->counts;
}

bool answer_empty(int* value) {
    *value = transmitter.empty() ? TIOCSER_TEMT : 0;
    return state()->transmitter.tells_empty;
}

bool answer_speed(int handle, void* argument) {
    auto& settings = *static_cast<termios2*>(argument);
    settings = settings_of(handle);
    if (state()->real_speed != 0) {
        settings.c_ospeed = static_cast<speed_t>(state()->real_speed.load());
    }
    return settings.c_ospeed != 0;
}

/// True when the request is one that a serial driver answers, and done.
bool answer(int handle, unsigned long request, void* argument) {
    auto* value = static_cast<int*>(argument);
    switch (request) {
        case TIOCMGET:
            ++state()->cts_looks;
            *value =
                state()->set_by_program | state()->other_signals | (state()->cts ? TIOCM_CTS : 0);
            return true;
        case TIOCMSET:
            set_lines(handle, *value & (TIOCM_RTS | TIOCM_DTR));
            return true;
        case TIOCMBIS:
            set_lines(handle, state()->set_by_program | *value);
            return true;
        case TIOCMBIC:
            set_lines(handle, state()->set_by_program & ~*value);
            return true;
        case TIOCOUTQ:
            *value = state()->queued;
            return true;
        case TIOCGICOUNT:
            return answer_counts(argument);
        case TIOCSERGETLSR:
            return answer_empty(value);
        case TCGETS2:
            return answer_speed(handle, argument);
        default:
            return false;
    }
}

}  // namespace

void emulate(Modem_lines* lines) {
    state() = lines;
    transmitter = Shift_register();
    kept_of_frame = CS8;
}

}  // namespace kelvane::testing

using namespace kelvane::testing;

extern "C" int ioctl(int handle, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    const bool device = is_device(handle);
    if (device && answer(handle, request, argument)) {
        return 0;
    }
    const int result = static_cast<int>(::syscall(SYS_ioctl, handle, request, argument));
    if (device && request == TCSETS2) {
        kept_of_frame = static_cast<termios2*>(argument)->c_cflag & kept_by_drivers;
        report_frame(handle);
    }
    return result;
}

extern "C" int tcsetattr(int handle, int when, const termios* settings) noexcept {
    static const auto system =
        reinterpret_cast<int (*)(int, int, const termios*)>(::dlsym(RTLD_NEXT, "tcsetattr"));
    const int result = system(handle, when, settings);
    if (!is_device(handle)) {
        return result;
    }
    kept_of_frame = settings->c_cflag & kept_by_drivers;
    report_frame(handle);
    transmitter.set(handle, (state()->set_by_program & TIOCM_DTR) != 0);
    return 0;  // the system complains of what it has not kept
}

extern "C" int tcgetattr(int handle, termios* settings) noexcept {
    static const auto system =
        reinterpret_cast<int (*)(int, termios*)>(::dlsym(RTLD_NEXT, "tcgetattr"));
    const int result = system(handle, settings);
    if (result == 0 && is_device(handle)) {
        settings->c_cflag = (settings->c_cflag & ~kept_by_drivers) | kept_of_frame;
    }
    return result;
}

extern "C" ssize_t write(int handle, const void* bytes, size_t count) {
    const ssize_t written = ::syscall(SYS_write, handle, bytes, count);
    if (written > 0 && is_device(handle) && state()->transmitter.there) {
        transmitter.take(handle, static_cast<int>(written));
    }
    return written;
}

extern "C" int close(int handle) {
    if (is_device(handle)) {
        transmitter.let_all_leave();
    }
    return static_cast<int>(::syscall(SYS_close, handle));
}
