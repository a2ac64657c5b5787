#include "platform/files.h"

#include <filesystem>
#include <system_error>

namespace kelvane {

namespace {

#ifdef _WIN32
constexpr std::string_view separators = "\\/";
constexpr char separator = '\\';
constexpr std::string_view forbidden_in_names = "\\/:*?\"<>|";
#else
constexpr std::string_view separators = "/";
constexpr char separator = '/';
constexpr std::string_view forbidden_in_names = "/";
#endif

}  // namespace

std::string Files::program_path(std::string_view name) const {
    if (!name.empty() && name.front() == '\\') {
        name.remove_prefix(1);
    }
    return path_in(program_directory(), name);
}

std::string folder_of(std::string_view path) {
    const std::size_t last = path.find_last_of(separators);
    if (last == std::string_view::npos) {
        return {};
    }
    return std::string(path.substr(0, last == 0 ? 1 : last));
}

std::string name_of(std::string_view path) {
    const std::size_t last = path.find_last_of(separators);
    return std::string(last == std::string_view::npos ? path : path.substr(last + 1));
}

std::string path_in(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && separators.find(path.back()) == std::string_view::npos) {
        path += separator;
    }
    path += name;
    return path;
}

bool can_be_file_name(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(forbidden_in_names) == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

bool is_absolute_path(std::string_view path) {
    if (path.empty()) {
        return false;
    }
    const bool drive = separators.size() > 1 && path.size() > 1 && path[1] == ':';
    return drive || separators.find(path.front()) != std::string_view::npos;
}

bool same_path(const std::string& one, const std::string& other) {
    const auto plain = [](const std::string& path) {
        std::error_code unknown_folder;
        return std::filesystem::absolute(path, unknown_folder).lexically_normal();
    };
    return !one.empty() && plain(one) == plain(other);
}

std::string backup_path(std::string_view path) {
    const std::string name = name_of(path);
    const std::size_t dot = name.rfind('.');
    const bool extended = dot != std::string::npos && dot > 0;
    const std::size_t extension = extended ? name.size() - dot : 0;
    return std::string(path.substr(0, path.size() - extension)) + ".bak";
}

}  // namespace kelvane
