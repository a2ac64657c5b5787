#include "desktop/disk_files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr std::size_t copy_block = 1U << 16U;
constexpr mode_t new_file_mode = 0666;

/// What the system says of a path that holds no file, whatever stands before its name.
bool says_missing(int error) {
    return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

Failure failure_of(int error) {
    return {std::strerror(error), says_missing(error)};
}

/// Of the system call that was made last.
Failure failed() {
    return failure_of(errno);
}

/// An open file that is closed again on every way out.
class Handle {
  public:
    explicit Handle(int descriptor) : descriptor_(descriptor) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    [[nodiscard]] bool ok() const { return descriptor_ >= 0; }
    [[nodiscard]] int get() const { return descriptor_; }
    /// Closes now; some file systems report a failed write only here.
    bool close() { return ::close(std::exchange(descriptor_, -1)) == 0; }

  private:
    int descriptor_;
};

Handle open_file(const std::string& path, int flags) {
    return Handle(::open(path.c_str(), flags | O_CLOEXEC, new_file_mode));
}

bool write_all(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        content.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return true;
}

/// Appends up to `most` further bytes to `content`; false when reading failed.
bool read_some(int descriptor, std::string& content, std::size_t most) {
    while (most > 0) {
        const std::size_t old_size = content.size();
        const std::size_t block = std::min(most, copy_block);
        content.resize(old_size + block);
        const ssize_t got = ::read(descriptor, content.data() + old_size, block);
        content.resize(old_size + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got == 0 || (got < 0 && errno != EINTR)) {
            return got == 0;
        }
        most -= content.size() - old_size;
    }
    return true;
}

/// The file that a chain of links ends at, so that replacing keeps the links.
std::string link_target(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
    return real ? std::string(real.get()) : path;
}

/// A new name's entry is safe only when its folder is on the disk too. Some file systems cannot
/// sync a folder, which is no reason to call the file unwritten.
void sync_folder_of(const std::string& path) {
    const std::string folder = folder_of(path);
    const Handle handle = open_file(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY);
    if (handle.ok()) {
        ::fsync(handle.get());
    }
}

/// The access rights that the file at `path` has, or those of a new file.
mode_t mode_for(const std::string& path) {
    struct stat old {};
    if (::stat(path.c_str(), &old) == 0) {
        return old.st_mode & 07777U;
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return new_file_mode & ~mask;
}

/// Lets `write` fill a temporary file beside `path`, which then takes the place of `path`.
Result<> replace_by(const std::string& path, const Unfinished_files& unfinished,
                    const std::function<bool(int)>& write) {
    const std::string target = link_target(path);
    // A rename asks only the folder; a write-protected file is to stay as it is.
    if (::access(target.c_str(), W_OK) != 0 && errno != ENOENT) {
        return failed();
    }
    std::string temporary = target + ".XXXXXX";
    Handle handle(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!handle.ok()) {
        return failed();
    }
    const Unfinished_files::Entry entry(unfinished, temporary);
    const bool done = write(handle.get()) && ::fchmod(handle.get(), mode_for(target)) == 0 &&
                      ::fsync(handle.get()) == 0 && handle.close() &&
                      ::rename(temporary.c_str(), target.c_str()) == 0;
    if (!done) {
        const Failure failure = failed();
        ::unlink(temporary.c_str());
        return failure;
    }
    sync_folder_of(target);
    return {};
}

bool copy_content(int from, int to) {
    std::string block;
    while (true) {
        block.clear();
        if (!read_some(from, block, copy_block) || !write_all(to, block)) {
            return false;
        }
        if (block.empty()) {
            return true;
        }
    }
}

Result<struct stat> look_at(const std::string& path) {
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) {
        return failed();
    }
    return found;
}

/// As `look_at`, for what is to be a file.
Result<struct stat> look_at_file(const std::string& path) {
    auto found = look_at(path);
    return found && S_ISDIR(found->st_mode) ? failure_of(EISDIR) : found;
}

}  // namespace

Disk_files::Disk_files(std::string program_directory)
    : program_directory_(std::move(program_directory)),
      unfinished_(program_path(file_names::unfinished)) {}

bool Disk_files::exists(const std::string& path) const {
    const auto found = look_at(path);
    return found ? !S_ISDIR(found->st_mode) : !found.missing();
}

bool Disk_files::is_folder(const std::string& path) const {
    const auto found = look_at(path);
    return found && S_ISDIR(found->st_mode);
}

Result<std::string> Disk_files::read(const std::string& path) const {
    return read_part(path, 0, std::string::npos);
}

Result<std::string> Disk_files::read_part(const std::string& path, std::uint64_t from,
                                          std::size_t count) const {
    const Handle handle = open_file(path, O_RDONLY | O_NONBLOCK);
    if (!handle.ok() ||
        (from > 0 && ::lseek(handle.get(), static_cast<off_t>(from), SEEK_SET) < 0)) {
        return failed();
    }
    std::string content;
    const std::uint64_t size = length(path).value_or(0);
    content.reserve(std::min<std::size_t>(size - std::min(size, from) + copy_block, count));
    if (!read_some(handle.get(), content, count)) {
        return failed();
    }
    return content;
}

Result<> Disk_files::replace(const std::string& path, std::string_view content) {
    return replace_by(path, unfinished_, [&](int to) { return write_all(to, content); });
}

Result<> Disk_files::try_out(const std::string& path) {
    Handle handle = open_file(path, O_WRONLY | O_CREAT | O_EXCL);
    if (!handle.ok()) {
        const bool folder_takes_files =
            errno == EEXIST && ::access(folder_of(path).c_str(), W_OK) == 0;
        return folder_takes_files ? Result<>() : failed();
    }
    const Unfinished_files::Entry entry(unfinished_, path);
    const bool written =
        write_all(handle.get(), " ") && ::fsync(handle.get()) == 0 && handle.close();
    const Result<> outcome = written ? Result<>() : failed();
    return ::unlink(path.c_str()) == 0 ? outcome : failed();
}

Result<> Disk_files::append(const std::string& path, std::string_view content) {
    const auto old_length = length(path);
    Handle handle = open_file(path, O_WRONLY | O_APPEND | O_CREAT);
    if (!handle.ok()) {
        return failed();
    }
    if (write_all(handle.get(), content) && handle.close()) {
        return {};
    }
    const Failure failure = failed();
    // Only what is certainly new goes: of a file that could not be looked at nothing is known.
    if (old_length.missing()) {
        ::unlink(path.c_str());
    } else if (old_length && ::truncate(path.c_str(), static_cast<off_t>(*old_length)) != 0) {
        return failed();
    }
    return failure;
}

Result<> Disk_files::sync(const std::string& path) {
    const Handle handle = open_file(path, O_WRONLY);
    return handle.ok() && ::fsync(handle.get()) == 0 ? Result<>() : failed();
}

Result<> Disk_files::copy(const std::string& from, const std::string& to) {
    const Handle source = open_file(from, O_RDONLY | O_NONBLOCK);
    if (!source.ok()) {
        return failed();
    }
    return replace_by(to, unfinished_,
                      [&](int target) { return copy_content(source.get(), target); });
}

Result<> Disk_files::rename(const std::string& from, const std::string& to) {
    if (const auto found = look_at_file(from); !found) {
        return found.failure();
    }
    // The old file at `to` goes: the new content must be on the disk before its name is.
    const Handle content = open_file(from, O_RDONLY | O_NONBLOCK);
    if (content.ok() && ::fsync(content.get()) != 0 && errno == EIO) {
        return failed();
    }
    if (::rename(from.c_str(), to.c_str()) != 0) {
        return failed();
    }
    sync_folder_of(to);
    return {};
}

Result<> Disk_files::remove(const std::string& path) {
    const bool gone = ::unlink(path.c_str()) == 0 || says_missing(errno);
    return gone ? Result<>() : failed();
}

Result<std::uint64_t> Disk_files::length(const std::string& path) const {
    const auto found = look_at_file(path);
    if (!found) {
        return found.failure();
    }
    return static_cast<std::uint64_t>(found->st_size);
}

Result<File_time> Disk_files::stamp(const std::string& path) const {
    const auto found = look_at_file(path);
    if (!found) {
        return found.failure();
    }
    const timespec& changed = found->st_mtim;
    return File_time(std::chrono::seconds(changed.tv_sec) +
                     std::chrono::nanoseconds(changed.tv_nsec));
}

std::string find_program_directory() {
    QString folder = QFile::decodeName(qgetenv("KELVANE_LITE_DIRECTORY"));
    if (folder.isEmpty()) {
        const QString beside = QCoreApplication::applicationDirPath();
        const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        const bool writable = ::access(QFile::encodeName(beside).constData(), W_OK) == 0;
        folder = writable ? beside : QDir(data).filePath("kelvane-lite");
    }
    folder = QDir::cleanPath(QDir::current().absoluteFilePath(folder));
    QDir().mkpath(folder);
    return QFile::encodeName(folder).toStdString();
}

}  // namespace kelvane
