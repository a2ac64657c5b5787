#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace kelvane {

/// When a file was changed.
using File_time = std::chrono::sys_time<std::chrono::nanoseconds>;

/// Whole-file operations; nothing is ever left open. Paths are bytes in the system's own form.
/// A failure says why in the system's words, and whether the file is simply missing: one that is
/// there and cannot be read is never to be taken for none.
class Files {
  public:
    virtual ~Files() = default;

    /// The folder that holds all of the program's own files, without a separator at its end.
    [[nodiscard]] virtual std::string program_directory() const = 0;

    /// The path of the program's own file `name`, which begins with a backslash ("\X" is the file X
    /// in the program directory).
    [[nodiscard]] std::string program_path(std::string_view name) const;

    /// True for an existing file that is not a folder, and for what the system cannot look at: only
    /// what is certainly not there is missing.
    [[nodiscard]] virtual bool exists(const std::string& path) const = 0;
    /// True for an existing folder.
    [[nodiscard]] virtual bool is_folder(const std::string& path) const = 0;

    /// The whole content.
    [[nodiscard]] virtual Result<std::string> read(const std::string& path) const = 0;
    /// At most `count` bytes from byte `from` on; none behind the end.
    [[nodiscard]] virtual Result<std::string> read_part(const std::string& path, std::uint64_t from,
                                                        std::size_t count) const = 0;
    /// At most `count` bytes from the start.
    [[nodiscard]] Result<std::string> read_start(const std::string& path, std::size_t count) const {
        return read_part(path, 0, count);
    }

    /// Makes `path` hold exactly `content`: written to a temporary file beside it, synced, renamed.
    /// On failure, as with a file that is write-protected, an old file of that name is untouched.
    [[nodiscard]] virtual Result<> replace(const std::string& path, std::string_view content) = 0;
    /// Adds `content` at the end, creating the file when it is missing. On failure the file keeps
    /// its old length.
    [[nodiscard]] virtual Result<> append(const std::string& path, std::string_view content) = 0;
    /// Writes one blank to a new file at `path` and removes it again, to see whether its folder can
    /// be written. A file that is there already stays as it is.
    [[nodiscard]] virtual Result<> try_out(const std::string& path) = 0;
    /// Makes what has been appended survive a loss of power. A name does since `replace` or
    /// `rename` has given it: the folder is not written again, for a receive does this every
    /// second.
    [[nodiscard]] virtual Result<> sync(const std::string& path) = 0;
    /// As `replace` with the content of `from`.
    [[nodiscard]] virtual Result<> copy(const std::string& from, const std::string& to) = 0;
    /// Renames within a folder or between folders of one disk; an existing `to` is replaced.
    [[nodiscard]] virtual Result<> rename(const std::string& from, const std::string& to) = 0;
    /// Done when the file is gone afterwards, a missing one included.
    virtual Result<> remove(const std::string& path) = 0;

    /// Length in bytes.
    [[nodiscard]] virtual Result<std::uint64_t> length(const std::string& path) const = 0;
    /// Time of the last change.
    [[nodiscard]] virtual Result<File_time> stamp(const std::string& path) const = 0;
};

/// The folder part of a path without its last separator (the root keeps it); empty when the path
/// has no separator. Separators are "/" and, on Windows, "\" too.
std::string folder_of(std::string_view path);
/// What follows the last separator.
std::string name_of(std::string_view path);
/// `folder` and `name` joined by the system's separator; `name` alone when `folder` is empty.
std::string path_in(std::string_view folder, std::string_view name);
/// True when `name` can be (part of) the name of one file: no separator, no NUL byte, no character
/// that the system forbids.
bool can_be_file_name(std::string_view name);
/// True for a path that begins at a root or a drive.
bool is_absolute_path(std::string_view path);
/// True when both paths spell the same file, relative parts resolved; links are not followed.
bool same_path(const std::string& one, const std::string& other);
/// `path` with its extension replaced by ".bak", which is appended when there is none. An extension
/// begins at the last "." of the file's own name; a dot that begins the name begins none.
std::string backup_path(std::string_view path);

}  // namespace kelvane
