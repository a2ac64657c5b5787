#pragma once

#include <optional>
#include <string>

#include "platform/files.h"
#include "platform/message_box.h"

namespace kelvane {

/// Writes the working copy (see `working_copy`) of `path` over the old one in the program
/// directory, which stays as it is when `path` cannot be read. When there is no new one, as with
/// `path` the working copy itself, the message that names the file.
[[nodiscard]] std::optional<Message> Make_scratchpad_copy(Files& files, const std::string& path);

/// The same with a working copy that is there already.
[[nodiscard]] std::optional<Message> Write_scratchpad_copy(Files& files,
                                                           const std::string& content);

}  // namespace kelvane
