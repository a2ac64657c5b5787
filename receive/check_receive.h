#pragma once

#include <string>

#include "platform/task.h"
#include "session/session.h"

namespace kelvane {

/// Prepares the target of a command-line receive, before any data is taken: tries whether its
/// folder can be written, asks before an existing file is overwritten, and keeps that as a ".bak"
/// file. False, after a box, when the job cannot or may not go on.
[[nodiscard]] Task<bool> Check_receive(const Session& session, std::string path);

}  // namespace kelvane
