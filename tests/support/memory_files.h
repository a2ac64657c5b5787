#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace kelvane::testing {

/// Files in memory, of which any operation can be made to fail.
class Memory_files : public Files {
  public:
    explicit Memory_files(std::string program_directory = "/kelvane")
        : folders{program_directory, "/", "/nc"}, directory_(std::move(program_directory)) {}

    std::string program_directory() const override { return directory_; }
    bool exists(const std::string& path) const override { return files_.contains(path); }
    bool is_folder(const std::string& path) const override { return folders.contains(path); }
    std::optional<std::string> read(const std::string& path) const override {
        return read_start(path, SIZE_MAX);
    }
    std::optional<std::string> read_start(const std::string& path,
                                          std::size_t most) const override {
        const bool readable = works("read", path) && exists(path);
        return readable ? std::optional(files_.at(path).substr(0, most)) : std::nullopt;
    }
    bool replace(const std::string& path, std::string_view content) override {
        const std::string folder = folder_of(path);
        if (!folder.empty() && !folders.contains(folder)) {
            last_error_ = "No such file or directory";
            return false;
        }
        return works("replace", path) && (files_[path] = content, true);
    }
    bool append(const std::string& path, std::string_view content) override {
        const std::string old = exists(path) ? files_[path] : "";
        return works("append", path) && replace(path, old + std::string(content));
    }
    bool copy(const std::string& from, const std::string& to) override {
        const auto content = read(from);
        return content && works("copy", to) && replace(to, *content);
    }
    bool rename(const std::string& from, const std::string& to) override {
        const bool possible = exists(from) && works("rename", to);
        return possible && (files_[to] = files_.extract(from).mapped(), true);
    }
    bool remove(const std::string& path) override {
        return works("remove", path) && (files_.erase(path), true);
    }
    std::optional<std::uint64_t> length(const std::string& path) const override {
        return exists(path) ? std::optional(files_.at(path).size()) : std::nullopt;
    }
    std::optional<std::time_t> stamp(const std::string& path) const override {
        return exists(path) ? std::optional(1'000'000'000) : std::nullopt;
    }
    std::string last_error() const override { return last_error_; }

    /// A file that is just there.
    void put(const std::string& path, std::string content) { files_[path] = std::move(content); }
    /// Its content, or "(missing)".
    [[nodiscard]] std::string content(const std::string& path) const {
        return exists(path) ? files_.at(path) : "(missing)";
    }
    /// Makes every operation of that name ("read", "replace", "append", "copy", "rename", "remove")
    /// on a path that ends with `path_end` fail.
    void fail(const std::string& operation, const std::string& path_end,
              const std::string& why = "Input/output error") {
        failing_.push_back({operation, path_end, why});
    }
    void repair() { failing_.clear(); }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        // A loop, because clang 14 cannot read the views of this standard library.
        for (const auto& [name, content] : files_) {
            names.push_back(name);
        }
        return names;
    }
    std::set<std::string> folders;

  private:
    struct Failure {
        std::string operation, path_end, why;
    };
    [[nodiscard]] bool works(const std::string& operation, const std::string& path) const {
        const auto failure = std::ranges::find_if(failing_, [&](const Failure& f) {
            return f.operation == operation && path.ends_with(f.path_end);
        });
        return failure == failing_.end() || (last_error_ = failure->why, false);
    }

    std::string directory_;
    std::map<std::string, std::string> files_;
    std::vector<Failure> failing_;
    mutable std::string last_error_;
};

}  // namespace kelvane::testing
