#include "transmit/scratch_copy.h"

#include <memory>
#include <utility>

#include "platform/file_pieces.h"
#include "platform/tape_image.h"
#include "session/file_names.h"
#include "session/transfer_end.h"
#include "session/unsaved_reception.h"

namespace kelvane {

namespace {

/// It would be overwritten or deleted, and it may be all that is left of a receive.
constexpr const char* own_file =
    "The program itself works with this file.\nCopy it under another name first.";

Message cannot_copy(std::string title, const std::string& path, const std::string& reason) {
    return warning_box("Cannot access file\n" + path + '\n' + reason, std::move(title));
}

}  // namespace

Task<std::optional<Message>> Make_scratchpad_copy(Event_loop& loop, Files& files, std::string path,
                                                  std::shared_ptr<const std::string>& content) {
    const std::string copy = files.program_path(file_names::scratch);
    if (same_path(path, copy)) {
        co_return cannot_copy("Disk read error", copy, own_file);
    }
    const auto read = co_await read_in_pieces(loop, files, path, std::move(content));
    if (!read) {
        co_return cannot_copy("Disk read error", path, read.reason());
    }
    content = working_copy(*read);
    co_return co_await Write_scratchpad_copy(loop, files, *content);
}

Task<std::optional<Message>> Write_scratchpad_copy(Event_loop& loop, Files& files,
                                                   const std::string& content) {
    const std::string copy = files.program_path(file_names::scratch);
    if (const auto kept = set_reception_aside(files); !kept) {
        co_return cannot_copy("Disk write error", copy, kept.reason());
    }
    const auto copied = co_await replace_in_pieces(
        loop, files, copy, content, files.program_path(file_names::scratch_unfinished));
    co_return copied ? std::nullopt
                     : std::optional(cannot_copy("Disk write error", copy, copied.reason()));
}

}  // namespace kelvane
