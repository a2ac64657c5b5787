#pragma once

#include <string>

namespace kelvane {

/// Folder of the names that stay with an adapter ("by-id") or with its socket ("by-path").
inline constexpr const char* lasting_names = "/dev/serial";

/// The name under which the device that is now called `node`, "/dev/ttyUSB0", is found again after
/// a restart: by what the adapter says of itself when it has a serial number, because adapters
/// without one share that name; else by the socket it is plugged into; else `node` itself.
std::string lasting_name(const std::string& node, bool has_serial_number,
                         const std::string& folder = lasting_names);

}  // namespace kelvane
