#include "support/memory_files.h"

#include <algorithm>

namespace kelvane::testing {

namespace {

constexpr std::time_t stamp_of_all = 1'000'000'000;

}  // namespace

Memory_files::Memory_files(std::string program_directory)
    : program_directory_(std::move(program_directory)) {
    folders_ = {program_directory_, "/", "/nc"};
}

bool Memory_files::fails(const std::string& operation, const std::string& path) const {
    const bool chosen = std::any_of(failing_.begin(), failing_.end(), [&](const auto& entry) {
        return entry.first == operation && path.ends_with(entry.second);
    });
    return chosen && !refused("Input/output error");
}

bool Memory_files::refused(const std::string& why) const {
    last_error_ = why;
    return false;
}

bool Memory_files::fits(const std::string& path, std::size_t new_size) const {
    std::size_t total = new_size;
    for (const auto& [name, content] : files_) {
        total += name == path ? 0 : content.size();
    }
    return total <= capacity_ || refused("No space left on device");
}

bool Memory_files::exists(const std::string& path) const {
    return files_.contains(path);
}

bool Memory_files::is_folder(const std::string& path) const {
    return folders_.contains(path);
}

std::optional<std::string> Memory_files::read(const std::string& path) const {
    return read_start(path, SIZE_MAX);
}

std::optional<std::string> Memory_files::read_start(const std::string& path,
                                                    std::size_t count) const {
    const auto found = files_.find(path);
    if (fails("read", path) || found == files_.end()) {
        return std::nullopt;
    }
    return found->second.substr(0, count);
}

bool Memory_files::replace(const std::string& path, std::string_view content) {
    const std::string folder = folder_of(path);
    if (!folder.empty() && !folders_.contains(folder)) {
        return refused("No such file or directory");
    }
    if (fails("replace", path) || !fits(path, content.size())) {
        return false;
    }
    files_[path] = content;
    return true;
}

bool Memory_files::append(const std::string& path, std::string_view content) {
    if (fails("append", path)) {
        return false;
    }
    const std::string old = files_.contains(path) ? files_[path] : std::string();
    return replace(path, old + std::string(content));
}

bool Memory_files::copy(const std::string& from, const std::string& to) {
    const auto content = read(from);
    return content && !fails("copy", to) && replace(to, *content);
}

bool Memory_files::rename(const std::string& from, const std::string& to) {
    if (!files_.contains(from) || fails("rename", to)) {
        return false;
    }
    auto content = std::move(files_[from]);
    files_.erase(from);
    files_[to] = std::move(content);
    return true;
}

bool Memory_files::remove(const std::string& path) {
    if (fails("remove", path)) {
        return false;
    }
    files_.erase(path);
    return true;
}

std::optional<std::uint64_t> Memory_files::length(const std::string& path) const {
    const auto found = files_.find(path);
    return found == files_.end() ? std::nullopt : std::optional(found->second.size());
}

std::optional<std::time_t> Memory_files::stamp(const std::string& path) const {
    return exists(path) ? std::optional(stamp_of_all) : std::nullopt;
}

void Memory_files::put(const std::string& path, std::string content) {
    files_[path] = std::move(content);
}

std::string Memory_files::content(const std::string& path) const {
    const auto found = files_.find(path);
    return found == files_.end() ? "(missing)" : found->second;
}

void Memory_files::fail(const std::string& operation, const std::string& path_end) {
    failing_.emplace_back(operation, path_end);
}

std::vector<std::string> Memory_files::names() const {
    std::vector<std::string> names;
    for (const auto& [name, content] : files_) {
        names.push_back(name);
    }
    return names;
}

}  // namespace kelvane::testing
