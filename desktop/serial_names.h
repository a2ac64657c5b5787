#pragma once

#include <string>
#include <vector>

namespace kelvane {

/// Folder of the names that stay with an adapter ("by-id") or with its socket ("by-path").
inline constexpr const char* lasting_names = "/dev/serial";

/// All names of the folder that lead to the device that is now called `node`, "/dev/ttyUSB0": by
/// what the adapter says of itself first, then by the socket it is plugged into; each sorted.
std::vector<std::string> names_that_lead_to(const std::string& node,
                                            const std::string& folder = lasting_names);

/// The name under which that device is found again after a restart: by what the adapter says of
/// itself when it has a serial number, because adapters without one share that name; else by its
/// socket; else `node` itself. `twins` are the other devices with the same number: where one of
/// them has no such name, the one name there is may be its own after a restart.
std::string lasting_name(const std::string& node, bool has_serial_number,
                         const std::vector<std::string>& twins = {},
                         const std::string& folder = lasting_names);

}  // namespace kelvane
