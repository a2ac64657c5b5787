#pragma once

#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/result.h"
#include "platform/task.h"

namespace kelvane {

// Long files in pieces, so that windows and timers wait for none of them. What is no longer than a
// piece is read or written at once.

/// The whole content. `loop` and `files` outlive the task, here and below.
[[nodiscard]] Task<Result<std::string>> read_in_pieces(Event_loop& loop, const Files& files,
                                                       std::string path);

/// The same for a file of which `known`, unless it is null, may be the content: then that is what
/// comes back, and the content is in memory only once. The file itself decides, byte by byte.
[[nodiscard]] Task<Result<std::shared_ptr<const std::string>>> read_in_pieces(
    Event_loop& loop, const Files& files, std::string path,
    std::shared_ptr<const std::string> known);

/// Makes `path` hold exactly `content`, which must stay as it is until then. A long content is
/// first written to `temporary`, on the same disk; on failure an old file at `path` is untouched.
[[nodiscard]] Task<Result<>> replace_in_pieces(Event_loop& loop, Files& files, std::string path,
                                               const std::string& content, std::string temporary);

}  // namespace kelvane
