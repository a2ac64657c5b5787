#include "transmit/scratch_copy.h"

#include <utility>

#include "session/file_names.h"
#include "session/unsaved_reception.h"
#include "transmit/tape_image.h"

namespace kelvane {

namespace {

/// It would be overwritten or deleted, and it may be all that is left of a receive.
constexpr const char* own_file =
    "\nThe program itself works with this file.\nCopy it under another name first.";

Message cannot_copy(std::string title, const std::string& path) {
    return {"Cannot access file\n" + path, std::move(title), Message_icon::critical,
            Message_buttons::ok};
}

}  // namespace

std::optional<Message> Make_scratchpad_copy(Files& files, const std::string& path) {
    const std::string copy = files.program_path(file_names::scratch);
    if (same_path(path, copy)) {
        return cannot_copy("Disk read error", copy + own_file);
    }
    auto content = files.read(path);
    if (!content) {
        return cannot_copy("Disk read error", path);
    }
    const auto copied = set_reception_aside(files).and_then(
        [&] { return files.replace(copy, working_copy(*std::move(content))); });
    return copied ? std::nullopt : std::optional(cannot_copy("Disk write error", copy));
}

}  // namespace kelvane
