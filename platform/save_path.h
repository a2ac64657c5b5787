#pragma once

#include <optional>
#include <string>

#include "platform/platform.h"
#include "platform/task.h"

namespace kelvane {

/// What is to be saved under a name that the operator chooses.
struct Save_request {
    std::string title;          ///< of the file dialog
    std::string filter;         ///< for this showing; empty: the dialog's own
    std::string extension;      ///< for a name that has none, with its dot; empty: none
    std::string proposed = {};  ///< path, or name alone; empty: none
};

/// Asks for the name in the file dialog, and again when a file of that name is there and is not to
/// be written over. No value when the operator cancels.
[[nodiscard]] Task<std::optional<std::string>> ask_save_path(const Platform& platform,
                                                             Save_request request);

/// The question before a file is written over.
[[nodiscard]] Message overwrite_question(const std::string& path);

}  // namespace kelvane
