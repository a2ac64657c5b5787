#include "frame/read_program.h"

#include <algorithm>
#include <utility>

#include "platform/file_pieces.h"
#include "platform/lines.h"
#include "platform/tape_image.h"

namespace kelvane {

namespace {

constexpr std::size_t bytes_at_once = std::size_t{1} << 18U;
constexpr std::size_t longest_row = 300;
constexpr std::size_t number_width = 6;

}  // namespace

Task<Result<>> Read_program::read(Event_loop& loop, const Files& files, std::string path) {
    auto content = co_await read_in_pieces(loop, files, path);
    const Result<> done = content ? Result<>() : Result<>(content.failure());
    co_await take(loop, std::move(path), std::move(content).value_or(std::string()));
    co_return done;
}

Task<> Read_program::take(Event_loop& loop, std::string path, std::string content) {
    path_ = std::move(path);
    text_ = working_copy(std::move(content));
    text_.resize(without_end_mark(text_).size());
    lines_ = Line_index();
    while (!lines_.extend(text_, bytes_at_once)) {
        co_await loop.breath();
    }
}

std::string Read_program::row(std::size_t line) const {
    const std::size_t begin = line_start(line);
    const std::size_t length = std::min(find_line_end(text_, begin) - begin, longest_row);
    std::string number = std::to_string(line + 1);
    number.insert(0, number_width - std::min(number_width, number.size()), ' ');
    return number + "  " + text_.substr(begin, length);
}

}  // namespace kelvane
