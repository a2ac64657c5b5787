#pragma once

#include <algorithm>
#include <functional>
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
    Result<std::string> read(const std::string& path) const override {
        return read_part(path, 0, SIZE_MAX);
    }
    Result<std::string> read_part(const std::string& path, std::uint64_t from,
                                  std::size_t most) const override {
        if (const auto state = works("read", path); !state) {
            return state.failure();
        }
        if (!exists(path)) {
            return missing;
        }
        const std::string& content = files_.at(path);
        return from < content.size() ? content.substr(from, most) : std::string();
    }
    Result<> replace(const std::string& path, std::string_view content) override {
        return works("replace", path).and_then([&] { return put_down(path, content); });
    }
    Result<> append(const std::string& path, std::string_view content) override {
        const std::string old = exists(path) ? files_[path] : "";
        return works("append", path).and_then([&] {
            return put_down(path, old + std::string(content));
        });
    }
    Result<> sync(const std::string& path) override {
        synced = content(path);
        return works("sync", path);
    }
    Result<> copy(const std::string& from, const std::string& to) override {
        const auto content = read(from);
        if (!content) {
            return content.failure();
        }
        return works("copy", to).and_then([&] { return put_down(to, *content); });
    }
    Result<> rename(const std::string& from, const std::string& to) override {
        if (!exists(from)) {
            return missing;
        }
        return works("rename", to).and_then([&] {
            return put_down(to, files_.extract(from).mapped());
        });
    }
    Result<> try_out(const std::string& path) override {
        return exists(path) ? Result<>()
                            : replace(path, " ").and_then([&] { return remove(path); });
    }
    Result<> remove(const std::string& path) override {
        return works("remove", path).and_then([&] {
            files_.erase(path);
            return Result<>();
        });
    }
    Result<std::uint64_t> length(const std::string& path) const override {
        if (const auto state = works("length", path); !state) {
            return state.failure();
        }
        return exists(path) ? Result<std::uint64_t>(files_.at(path).size()) : missing;
    }
    /// A little later at every change.
    Result<File_time> stamp(const std::string& path) const override {
        if (const auto state = works("stamp", path); !state) {
            return state.failure();
        }
        if (!exists(path)) {
            return missing;
        }
        constexpr std::chrono::seconds start(1'000'000'000);
        return File_time(start + std::chrono::nanoseconds(changes_.at(path)));
    }

    /// A file that is just there.
    void put(const std::string& path, std::string content) {
        files_[path] = std::move(content);
        ++changes_[path];
    }
    /// Its content, or "(missing)".
    [[nodiscard]] std::string content(const std::string& path) const {
        return exists(path) ? files_.at(path) : "(missing)";
    }
    /// Makes every operation of that name ("read", "replace", "append", "copy", "rename", "remove")
    /// on a path that ends with `path_end` fail.
    void fail(const std::string& operation, const std::string& path_end,
              const std::string& why = "Input/output error") {
        fates_.push_back({operation, path_end, why});
    }
    /// Told of every operation before it is done, and may refuse it.
    std::function<Result<>(const std::string& operation, const std::string& path)> on_operation;
    [[nodiscard]] const std::map<std::string, std::string>& all() const { return files_; }
    /// What the file synced last held then.
    std::string synced;
    void repair() { fates_.clear(); }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        names.reserve(files_.size());
        for (const auto& [name, content] : files_) {
            names.push_back(name);
        }
        return names;
    }
    std::set<std::string> folders;

  private:
    struct Fate {
        std::string operation, path_end, why;
    };
    static inline const Failure missing{"No such file or directory", true};
    [[nodiscard]] Result<> works(const std::string& operation, const std::string& path) const {
        const auto fate = std::ranges::find_if(fates_, [&](const Fate& f) {
            return f.operation == operation && path.ends_with(f.path_end);
        });
        if (fate != fates_.end()) {
            return Failure{fate->why};
        }
        return on_operation ? on_operation(operation, path) : Result<>();
    }
    Result<> put_down(const std::string& path, std::string_view content) {
        const std::string folder = folder_of(path);
        if (!folder.empty() && !folders.contains(folder)) {
            return missing;
        }
        put(path, std::string(content));
        return {};
    }

    std::string directory_;
    std::map<std::string, std::string> files_;
    std::map<std::string, int> changes_;
    std::vector<Fate> fates_;
};

}  // namespace kelvane::testing
