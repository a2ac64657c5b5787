#include "transmit/scratch_copy.h"

#include "session/file_names.h"
#include "transmit/tape_image.h"

namespace kelvane {

namespace {

/// It would be overwritten or deleted, and it may be all that is left of a receive.
constexpr const char* own_file =
    "\nThe program itself works with this file.\nCopy it under another name first.";

bool cannot_copy(Kelvane_lite_form& window, const std::string& title, const std::string& path) {
    window.box("Cannot access file\n" + path, Message_icon::critical, Message_buttons::ok, title);
    return false;
}

}  // namespace

bool Make_scratchpad_copy(Kelvane_lite_form& window, const std::string& path) {
    Files& files = window.platform.files;
    const std::string copy = files.program_path(file_names::scratch);
    if (same_path(path, copy)) {
        return cannot_copy(window, "Disk read error", copy + own_file);
    }
    auto content = files.read(path);
    if (!content) {
        return cannot_copy(window, "Disk read error", path);
    }
    const auto copied = files.replace(copy, working_copy(*std::move(content)));
    return copied || cannot_copy(window, "Disk write error", copy);
}

}  // namespace kelvane
