#include "editing/recent_programs.h"

#include <algorithm>

#include "platform/lines.h"
#include "session/file_names.h"

namespace kelvane {

Recent_programs::Recent_programs(Files& files) : files_(files) {
    const auto read = files.read(files.program_path(file_names::recent_programs));
    unread_ = read.unreadable();
    const std::string list = read.value_or(std::string());
    Lines lines(list);
    while (!lines.at_end() && paths_.size() < most) {
        if (const std::string_view path = lines.take(); !path.empty()) {
            paths_.emplace_back(path);
        }
    }
}

void Recent_programs::add(const std::string& path) {
    if (path.find_first_of("\r\n") != std::string::npos) {
        return;
    }
    std::erase_if(paths_, [&path](const std::string& other) { return same_path(path, other); });
    paths_.insert(paths_.begin(), path);
    paths_.resize(std::min(paths_.size(), most));
    std::string list;
    for (const std::string& each : paths_) {
        list += each + "\r\n";
    }
    if (!unread_) {
        static_cast<void>(files_.replace(files_.program_path(file_names::recent_programs), list));
    }
}

}  // namespace kelvane
