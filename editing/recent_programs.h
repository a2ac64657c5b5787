#pragma once

#include <string>
#include <vector>

#include "platform/files.h"

namespace kelvane {

/// The programs that were opened last, the newest first, kept in a file of the program directory
/// with a path on each line.
class Recent_programs {
  public:
    static constexpr std::size_t most = 8;

    explicit Recent_programs(Files& files);
    [[nodiscard]] const std::vector<std::string>& paths() const { return paths_; }
    /// Puts a path first. A list that cannot be written is only kept for this run, and one that
    /// could not be read is not written over.
    void add(const std::string& path);

  private:
    Files& files_;
    std::vector<std::string> paths_;
    bool unread_ = false;
};

}  // namespace kelvane
