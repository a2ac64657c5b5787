#pragma once

#include <optional>
#include <string>

#include "platform/task.h"
#include "session/session.h"

namespace kelvane {

/// Tries whether the folder of `path` takes new files; the box that says why not, if so.
[[nodiscard]] std::optional<Message> Try_target_folder(Files& files, const std::string& path);

/// Prepares the target of a command-line receive, before any data is taken: tries whether its
/// folder can be written, asks before an existing file is overwritten, and keeps that as a ".bak"
/// file. False, after a box, when the job cannot or may not go on.
[[nodiscard]] Task<bool> Check_receive(const Session& session, std::string path);

}  // namespace kelvane
