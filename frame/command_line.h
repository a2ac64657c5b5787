#pragma once

#include <string>
#include <string_view>

#include "session/shared_state.h"

namespace kelvane {

/// Takes a command line of the form event|file[|machine] into the `Command_line` variables. A
/// non-empty line without any "|" is a file to open, and no job.
void parse_command_line(std::string_view line, Shared_state& state);

/// What is wrong with a command line, "There is no job 9"; empty when nothing is.
[[nodiscard]] std::string command_line_error(std::string_view line);

/// How the program is called; lines ended by line feeds.
[[nodiscard]] std::string_view usage_text();

}  // namespace kelvane
