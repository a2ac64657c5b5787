#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/task.h"

namespace kelvane {

/// Writes the working copy (see `working_copy`) of `path` over the old one in the program
/// directory, which stays as it is when `path` cannot be read; `content` then holds it. When there
/// is no new one, as with `path` the working copy itself, the message that names the file. Others
/// have their turn while a long file is copied. `content` may come with what the file probably
/// holds, which is then shared.
[[nodiscard]] Task<std::optional<Message>> Make_scratchpad_copy(
    Event_loop& loop, Files& files, std::string path, std::shared_ptr<const std::string>& content);

/// The same with a working copy that is there already.
[[nodiscard]] Task<std::optional<Message>> Write_scratchpad_copy(Event_loop& loop, Files& files,
                                                                 const std::string& content);

}  // namespace kelvane
