#include "desktop/serial_line.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <linux/serial.h>
#include <poll.h>
#include <pwd.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

constexpr int highest_baud = 4'000'000;

std::vector<std::string_view> comma_fields(std::string_view text) {
    std::vector<std::string_view> fields;
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = text.find(',');
        fields.push_back(text.substr(0, comma));
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
    }
    return fields;
}

std::optional<int> number_in(std::string_view text, int least, int most) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    const bool fits = error == std::errc() && stop == end && number >= least && number <= most;
    return fits ? std::optional(number) : std::nullopt;
}

std::string group_name(gid_t group) {
    const struct group* entry = ::getgrgid(group);
    return entry == nullptr ? std::to_string(group) : std::string(entry->gr_name);
}

/// The error with which the device refuses to be opened; 0 when it does not.
int open_error(const std::string& device) {
    const int handle = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (handle < 0) {
        return errno;
    }
    termios settings{};
    const int error = ::tcgetattr(handle, &settings) == 0 ? 0 : errno;
    ::close(handle);
    return error;
}

std::string user_name(uid_t user) {
    const struct passwd* entry = ::getpwuid(user);
    return entry == nullptr ? std::to_string(user) : std::string(entry->pw_name);
}

/// Whether the program that has written its number into a lock file may still run.
bool owner_may_run(const std::string& lock_file) {
    pid_t owner = 0;
    const bool known = static_cast<bool>(std::ifstream(lock_file) >> owner) && owner > 0;
    return known && (::kill(owner, 0) == 0 || errno != ESRCH);
}

std::string in_use(const std::string& device) {
    return device + " is in use by another program.";
}

/// Serial ports are locked by files, in the first of these folders that can be written. One that a
/// killed program has left behind goes by itself, unless it belongs to another user.
std::string locked(const std::string& device) {
    constexpr std::string_view prefix = "/dev/";
    std::string name = device.substr(device.starts_with(prefix) ? prefix.size() : 0);
    std::replace(name.begin(), name.end(), '/', '_');
    for (const char* folder : {"/var/lock", "/etc/locks", "/var/spool/locks", "/var/spool/uucp",
                               "/tmp", "/var/tmp", "/var/lock/lockdev", "/run/lock"}) {
        const std::string file = std::string(folder) + "/LCK.." + name;
        struct stat found {};
        if (::stat(file.c_str(), &found) == 0 && !owner_may_run(file)) {
            std::string text = device;
            text += " is locked by the file " + file + " of the user \"" + user_name(found.st_uid);
            text +=
                "\". When no program uses the line any more, have that file deleted, then try "
                "again.";
            return text;
        }
    }
    return in_use(device);
}

/// Being in the group helps only where the group may read and write; the administrator's own group,
/// which may do much else, is no way for an operator.
std::string no_permission(const std::string& device, const struct stat& found) {
    constexpr mode_t group_may = S_IRGRP | S_IWGRP;
    const std::string group = group_name(found.st_gid);
    const bool helps = found.st_gid != 0 && (found.st_mode & group_may) == group_may;
    return "You have no permission to use " + device + ". " +
           (helps ? "It belongs to the group \"" + group +
                        "\": have yourself added to it, then log in again:\nsudo usermod -aG " +
                        group + " " + user_name(::getuid())
                  : "It belongs to the group \"" + group +
                        "\", which is no help: the computer's administrator must change its "
                        "permissions.");
}

/// The folder that the system keeps on a device; `device` may be a lasting name for it.
std::filesystem::path class_of(const std::string& device, const std::string& classes) {
    std::error_code error;
    const auto path = std::filesystem::canonical(device, error);
    return classes / (error ? std::filesystem::path(device) : path).filename();
}

std::filesystem::path trigger_of(const std::string& device, const std::string& classes) {
    return class_of(device, classes) / "rx_trig_bytes";
}

}  // namespace

int Line_settings::bits_per_character() const {
    return 1 + data_bits + (parity == 'N' ? 0 : 1) + stop_bits;
}

std::optional<Line_settings> parse_line_settings(std::string_view text) {
    const auto fields = comma_fields(text);
    if (fields.size() != 4 || fields[1].size() != 1 ||
        std::string_view("NEOMS").find(fields[1]) == std::string_view::npos) {
        return std::nullopt;
    }
    const auto baud = number_in(fields[0], 1, highest_baud);
    const auto data_bits = number_in(fields[2], 5, 8);
    const auto stop_bits = number_in(fields[3] == "1.5" ? "2" : fields[3], 1, 2);
    if (!baud || !data_bits || !stop_bits) {
        return std::nullopt;
    }
    return Line_settings{*baud, fields[1].front(), *data_bits, *stop_bits};
}

Line_look look_at_line(int handle) {
    pollfd line{handle, POLLIN, 0};
    if (::poll(&line, 1, 0) < 0) {
        return {};
    }
    const unsigned events = static_cast<unsigned short>(line.revents);
    return {(events & (POLLHUP | POLLERR | POLLNVAL)) != 0, (events & POLLIN) != 0};
}

std::optional<std::size_t> driver_queue(int handle) {
    int count = 0;
    if (::ioctl(handle, TIOCOUTQ, &count) == 0) {
        return static_cast<std::size_t>(count);
    }
    return errno == EIO || errno == ENODEV || errno == ENXIO ? std::nullopt
                                                             : std::optional<std::size_t>(0);
}

void set_driver_handshaking(int handle, const Port_settings& settings) {
    termios line{};
    if (::tcgetattr(handle, &line) != 0) {
        return;
    }
    const bool software = uses_xon_xoff(settings.handshake);
    const bool hardware = uses_rts_cts(settings.handshake);
    line.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
    line.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
    const tcflag_t obeying = settings.transparent ? 0 : IXON;
    line.c_iflag |= software ? static_cast<tcflag_t>(IXOFF) | obeying : 0;
    line.c_cflag |= hardware ? static_cast<tcflag_t>(CRTSCTS) : 0;
    line.c_cc[VSTART] = static_cast<cc_t>(settings.xon);
    line.c_cc[VSTOP] = static_cast<cc_t>(settings.xoff);
    ::tcsetattr(handle, TCSANOW, &line);
}

void set_modem_lines(int handle, bool on) {
    const int lines = TIOCM_RTS | TIOCM_DTR;
    ::ioctl(handle, on ? TIOCMBIS : TIOCMBIC, &lines);
}

void set_modem_line(int handle, Own_signal signal, bool on) {
    const int line = signal == Own_signal::dtr ? TIOCM_DTR : TIOCM_RTS;
    ::ioctl(handle, on ? TIOCMBIS : TIOCMBIC, &line);
}

std::optional<Machine_signals> modem_signals(int handle) {
    int lines = 0;
    if (::ioctl(handle, TIOCMGET, &lines) != 0) {
        return std::nullopt;
    }
    return Machine_signals{(lines & TIOCM_CTS) != 0, (lines & TIOCM_DSR) != 0,
                           (lines & TIOCM_CAR) != 0, (lines & TIOCM_RNG) != 0};
}

bool clear_to_send(int handle) {
    const auto signals = modem_signals(handle);
    return !signals || signals->cts;
}

void ask_for_low_latency(int handle) {
    serial_struct port{};
    if (::ioctl(handle, TIOCGSERIAL, &port) == 0) {
        port.flags |= ASYNC_LOW_LATENCY;
        ::ioctl(handle, TIOCSSERIAL, &port);
    }
}

std::optional<Driver_counts> driver_counts(int handle) {
    serial_icounter_struct count{};
    if (::ioctl(handle, TIOCGICOUNT, &count) != 0) {
        return std::nullopt;
    }
    return Driver_counts{count.cts,
                         {count.frame, count.parity, count.overrun + count.buf_overrun, count.brk}};
}

std::optional<bool> transmitter_empty(int handle) {
    unsigned state = 0;
    return ::ioctl(handle, TIOCSERGETLSR, &state) == 0 ? std::optional((state & TIOCSER_TEMT) != 0)
                                                       : std::nullopt;
}

std::optional<int> set_receive_trigger(const std::string& device, const std::string& classes) {
    const auto path = trigger_of(device, classes);
    if (::access(path.c_str(), W_OK) == 0) {
        std::ofstream(path) << "1\n";
    }
    int trigger = 0;
    return std::ifstream(path) >> trigger ? std::optional(trigger) : std::nullopt;
}

int xoff_delay(const std::string& device, const std::string& classes) {
    constexpr int silence = 5;  // the character itself, and four times as much
    const auto path = trigger_of(device, classes);
    int trigger = 0;
    std::ifstream(path) >> trigger;
    return trigger > 1 && ::access(path.c_str(), W_OK) != 0 ? silence : 0;
}

bool counts_cts_changes(const std::string& device, const std::string& classes) {
    // This one is told of the modem lines with every packet; a look at them costs a packet.
    constexpr const char* counting_driver = "ftdi_sio";
    std::error_code error;
    const auto driver =
        std::filesystem::read_symlink(class_of(device, classes) / "device" / "driver", error);
    return !error && driver.filename() == counting_driver;
}

std::string explain_open_failure(const std::string& device, bool refused,
                                 const std::string& system_text) {
    struct stat found {};
    const int error = ::stat(device.c_str(), &found) == 0 ? open_error(device) : errno;
    switch (error) {
        case ENOENT:
        case ENOTDIR:
        case ENXIO:
        case ENODEV:
        case EIO:
        case ENOTTY:
            return "There is no serial device " + device +
                   ". Plug the adapter in, or choose another device for this port under "
                   "Configure, Serial port.";
        case EACCES:
        case EPERM:
            return no_permission(device, found);
        case EBUSY:
            return in_use(device);
        default:
            break;
    }
    if (refused) {
        return locked(device);
    }
    return device + ": " + system_text;
}

}  // namespace kelvane
