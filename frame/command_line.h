#pragma once

#include <string_view>

#include "session/shared_state.h"

namespace kelvane {

/// Takes a command line of the form event|file[|machine] into the `Command_line` variables. A
/// non-empty line without any "|" sets only `Command_line`.
void parse_command_line(std::string_view line, Shared_state& state);

}  // namespace kelvane
