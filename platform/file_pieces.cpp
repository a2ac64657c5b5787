#include "platform/file_pieces.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace kelvane {

namespace {

constexpr std::size_t piece_size = std::size_t{2} << 20U;  // bytes

/// A file that goes unless it has been put in its place.
class Temporary_file {
  public:
    Temporary_file(Files& files, std::string path) : files_(files), path_(std::move(path)) {}
    Temporary_file(const Temporary_file&) = delete;
    Temporary_file& operator=(const Temporary_file&) = delete;
    ~Temporary_file() {
        if (files_.exists(path_)) {
            files_.remove(path_);
        }
    }

  private:
    Files& files_;
    const std::string path_;
};

/// Whether the file holds exactly `content`, which outlives the task.
Task<Result<bool>> holds(Event_loop& loop, const Files& files, std::string path,
                         std::string_view content) {
    std::size_t same = 0;
    while (true) {
        const auto piece = files.read_part(path, same, piece_size);
        if (!piece) {
            co_return piece.failure();
        }
        if (content.substr(same, piece->size()) != *piece) {
            co_return false;
        }
        same += piece->size();
        if (piece->size() < piece_size) {
            co_return same == content.size();
        }
        co_await loop.breath();
    }
}

}  // namespace

Task<Result<std::string>> read_in_pieces(Event_loop& loop, const Files& files, std::string path) {
    std::string content;
    content.reserve(files.length(path).value_or(0));
    while (true) {
        const auto piece = files.read_part(path, content.size(), piece_size);
        if (!piece) {
            co_return piece.failure();
        }
        content += *piece;
        if (piece->size() < piece_size) {
            co_return content;
        }
        co_await loop.breath();
    }
}

Task<Result<std::shared_ptr<const std::string>>> read_in_pieces(
    Event_loop& loop, const Files& files, std::string path,
    std::shared_ptr<const std::string> known) {
    if (known) {
        const auto same = co_await holds(loop, files, path, *known);
        if (!same) {
            co_return same.failure();
        }
        if (*same) {
            co_return known;
        }
        known.reset();
    }
    auto content = co_await read_in_pieces(loop, files, std::move(path));
    if (!content) {
        co_return content.failure();
    }
    co_return std::make_shared<const std::string>(*std::move(content));
}

Task<Result<>> replace_in_pieces(Event_loop& loop, Files& files, std::string path,
                                 const std::string& content, std::string temporary) {
    if (content.size() <= piece_size) {
        co_return files.replace(path, content);
    }
    const Temporary_file remains(files, temporary);
    const std::string_view all = content;
    auto written = files.replace(temporary, all.substr(0, piece_size));
    for (std::size_t at = piece_size; written && at < all.size(); at += piece_size) {
        co_await loop.breath();
        written = files.append(temporary, all.substr(at, piece_size)).and_then([&] {
            return files.sync(temporary);
        });
    }
    co_return written.and_then([&] { return files.rename(temporary, path); });
}

}  // namespace kelvane
