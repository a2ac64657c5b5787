#pragma once

#include <string>

#include "frame/main_window.h"

namespace kelvane {

/// Writes the working copy (see `working_copy`) of `path` over the old one in the program
/// directory, which stays as it is when `path` cannot be read. Without a new one, after a critical
/// box that names the file, false; so it is when `path` is the working copy itself.
[[nodiscard]] bool Make_scratchpad_copy(Kelvane_lite_form& window, const std::string& path);

}  // namespace kelvane
