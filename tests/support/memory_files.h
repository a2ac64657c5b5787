#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/files.h"

namespace kelvane::testing {

/// Files in memory, which can be full and of which any operation can be made to fail.
class Memory_files : public Files {
  public:
    explicit Memory_files(std::string program_directory = "/kelvane");

    [[nodiscard]] std::string program_directory() const override { return program_directory_; }
    [[nodiscard]] bool exists(const std::string& path) const override;
    [[nodiscard]] bool is_folder(const std::string& path) const override;
    [[nodiscard]] std::optional<std::string> read(const std::string& path) const override;
    [[nodiscard]] std::optional<std::string> read_start(const std::string& path,
                                                        std::size_t count) const override;
    [[nodiscard]] bool replace(const std::string& path, std::string_view content) override;
    [[nodiscard]] bool append(const std::string& path, std::string_view content) override;
    [[nodiscard]] bool copy(const std::string& from, const std::string& to) override;
    [[nodiscard]] bool rename(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override;
    [[nodiscard]] std::optional<std::uint64_t> length(const std::string& path) const override;
    [[nodiscard]] std::optional<std::time_t> stamp(const std::string& path) const override;
    [[nodiscard]] std::string last_error() const override { return last_error_; }

    /// A file that is just there.
    void put(const std::string& path, std::string content);
    /// Its content, or "(missing)".
    [[nodiscard]] std::string content(const std::string& path) const;
    void add_folder(const std::string& path) { folders_.insert(path); }
    void remove_folder(const std::string& path) { folders_.erase(path); }
    /// Makes every operation of that name ("read", "replace", "append", "copy", "rename", "remove")
    /// on a path that ends with `path_end` fail.
    void fail(const std::string& operation, const std::string& path_end);
    void repair() { failing_.clear(); }
    /// All files together may hold no more than this.
    void set_capacity(std::size_t bytes) { capacity_ = bytes; }
    [[nodiscard]] std::vector<std::string> names() const;

  private:
    [[nodiscard]] bool fails(const std::string& operation, const std::string& path) const;
    [[nodiscard]] bool refused(const std::string& why) const;
    [[nodiscard]] bool fits(const std::string& path, std::size_t new_size) const;

    std::string program_directory_;
    std::map<std::string, std::string> files_;
    std::set<std::string> folders_;
    std::vector<std::pair<std::string, std::string>> failing_;
    std::size_t capacity_ = SIZE_MAX;
    mutable std::string last_error_;
};

}  // namespace kelvane::testing
