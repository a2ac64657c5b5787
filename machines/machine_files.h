#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "session/file_names.h"
#include "session/shared_state.h"

namespace kelvane {

/// "\Editor COM port settings for NAME" for every machine, the built-in one included.
[[nodiscard]] std::string named_port_settings_name(std::string_view machine);
/// The path of a file that has a machine's name in its own; no value when that cannot be the name
/// of one file in the program directory (a separator in the machine's name, for instance).
[[nodiscard]] std::optional<std::string> machine_file_path(const Files& files,
                                                           std::string_view file_name);

/// The content of such a file; missing too when no file can have the name.
[[nodiscard]] Result<std::string> read_machine_file(const Files& files, std::string_view file_name);

/// Writes such a file whole or not at all. One that is there and cannot be read is not written.
[[nodiscard]] Result<> write_machine_file(Files& files, std::string_view file_name,
                                          std::string_view content);

/// The names of the list file in its order, without empty lines; none when there is no such file.
[[nodiscard]] Result<std::vector<std::string>> read_machine_list(const Files& files);

/// What the dialogs list: the built-in machine, then the names of the list file.
[[nodiscard]] Result<std::vector<std::string>> machine_list_items(const Files& files);

/// Position of the first of `items` that is `machine`; 0 when it is not among them.
[[nodiscard]] int machine_position(const std::vector<std::string>& items, std::string_view machine);

/// Makes the list file hold just these names (the built-in machine's is not among them).
[[nodiscard]] Result<> write_machine_list(Files& files, const std::vector<std::string>& names);

/// Takes every line equal to `name` out of the list file, all others staying as they are. The new
/// list is complete in the scratch file before the old one goes. Done when there is no list.
[[nodiscard]] Result<> remove_from_machine_list(Files& files, std::string_view name);

/// The switchbox select codes of a machine: its file's first line; empty without a file.
[[nodiscard]] Result<std::string> read_switchbox_text(const Files& files, std::string_view machine);

}  // namespace kelvane
