#pragma once

#include <optional>
#include <string>

#include "platform/task.h"

namespace kelvane {

/// What the operator chooses a file for: the words on the dialog and its button follow from it. The
/// dialog itself asks nothing about files that exist or do not.
enum class File_purpose { open, save };

/// The file dialog, which keeps its settings from one showing to the next.
class File_dialog {
  public:
    virtual ~File_dialog() = default;

    /// What the next file is asked for: "Send to Mill 2"; it holds for one showing.
    std::string title;
    /// The path that the next file is proposed to have, or its name alone; for one showing.
    std::string proposed;
    std::string initial_directory;
    /// Description and pattern pairs, separated by "|": "NC programs|*.nc;*.tap|All files|*".
    std::string filter;
    /// Counted from 1; 0 is taken as 1.
    int filter_index = 1;

    /// The chosen path, or no value when the operator cancels. Waits while the program goes on.
    virtual Task<std::optional<std::string>> ask_file(File_purpose purpose) = 0;
    /// The chosen folder, `start` being shown first.
    virtual Task<std::optional<std::string>> ask_folder(std::string start) = 0;
};

}  // namespace kelvane
