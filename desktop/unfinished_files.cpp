#include "desktop/unfinished_files.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

namespace fs = std::filesystem;

std::string content_of(const std::string& journal) {
    std::ifstream file(journal, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void store(const std::string& journal, const std::string& content) {
    if (content.empty()) {
        ::unlink(journal.c_str());
    } else {
        std::ofstream(journal, std::ios::binary) << content;
    }
}

/// An entry tells its length: one that a power failure has cut must not name another file.
std::string entry_of(const std::string& path) {
    return std::to_string(path.size()) + " " + path + '\0';
}

std::vector<std::string> paths_in(const std::string& content) {
    std::vector<std::string> paths;
    for (std::size_t at = 0, end = 0; (end = content.find('\0', at)) != std::string::npos;
         at = end + 1) {
        const std::string entry = content.substr(at, end + 1 - at);
        std::string path = entry.substr(std::min(entry.find(' ') + 1, entry.size() - 1));
        path.pop_back();
        if (entry == entry_of(path)) {
            paths.push_back(std::move(path));
        }
    }
    return paths;
}

/// False when the file is gone, or its folder holds no such file.
bool stays(const std::string& path) {
    std::error_code unknown;
    const bool folder_missing = !fs::exists(fs::path(path).parent_path(), unknown);
    return folder_missing || (::unlink(path.c_str()) != 0 && errno != ENOENT);
}

}  // namespace

Unfinished_files::Entry::Entry(const Unfinished_files& files, const std::string& path)
    : journal_(files.journal_), before_(content_of(journal_)) {
    std::error_code unknown;
    store(journal_, before_ + entry_of(fs::absolute(path, unknown).string()));
}

Unfinished_files::Entry::~Entry() {
    store(journal_, before_);
}

void Unfinished_files::remove_left_behind() const {
    std::string left;
    for (const std::string& path : paths_in(content_of(journal_))) {
        left += stays(path) ? entry_of(path) : "";
    }
    store(journal_, left);
}

}  // namespace kelvane
