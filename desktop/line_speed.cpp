#include "desktop/line_speed.h"

// The kernel's own terminal settings, which know every speed; they exclude <termios.h>.
#include <asm/termbits.h>
#include <cstdlib>
#include <sys/ioctl.h>

namespace kelvane {

std::optional<int> line_speed(int handle) {
    termios2 settings{};
    const bool told = ::ioctl(handle, TCGETS2, &settings) == 0 && settings.c_ospeed > 0;
    return told ? std::optional(static_cast<int>(settings.c_ospeed)) : std::nullopt;
}

std::string speed_trouble(const std::string& device, int wanted, int actual) {
    constexpr int tolerated = 50;  // one part in so many
    if (std::abs(static_cast<long>(actual) - wanted) * tolerated <= wanted) {
        return {};
    }
    return device + " cannot run at " + std::to_string(wanted) + " baud; it would run at " +
           std::to_string(actual) + ". Choose a baud rate that it has, or another adapter.";
}

}  // namespace kelvane
