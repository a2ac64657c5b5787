#pragma once

#include "platform/file_dialog.h"
#include "platform/files.h"
#include "session/shared_state.h"

namespace kelvane {

/// The four files that start-up reads. A missing or short file ends its own reading silently: what
/// was read before stays, the rest keeps its defaults. One that is there and cannot be read is
/// noted in `unread_files`.
void read_selected_machine(const Files& files, Shared_state& state);
void read_default_directories(const Files& files, Shared_state& state, File_dialog& dialog);
void read_default_file_types(const Files& files, Shared_state& state, File_dialog& dialog);
/// Sets the defaults of the page layout first.
void read_page_layout(const Files& files, Shared_state& state);

/// Writes the selected machine's index and name, unless they could not be read. When that fails the
/// old file is whole.
[[nodiscard]] Result<> write_selected_machine(Files& files, const Shared_state& state);

}  // namespace kelvane
