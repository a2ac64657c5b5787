#pragma once

#include <string>
#include <string_view>

#include "frame/file_names.h"

/// Names of the machines' own files in the program directory. A machine's name becomes part of two
/// of them as it stands; "(default)" has names of its own.
namespace kelvane {

/// "\Editor COM port settings", or "\Editor COM port settings for NAME".
std::string port_settings_name(std::string_view machine);
/// "\Switchbox codes", or "\Switchbox codes for NAME".
std::string switchbox_name(std::string_view machine);

}  // namespace kelvane
