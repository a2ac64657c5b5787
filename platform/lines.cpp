#include "platform/lines.h"

#include <algorithm>

namespace kelvane {

std::string_view Lines::take() {
    const std::size_t end = find_line_end(text_, position_);
    const std::string_view line = text_.substr(position_, end - position_);
    position_ = end + line_end_length(text_, end);
    return line;
}

std::size_t find_line_end(std::string_view text, std::size_t from) {
    const auto* const end = std::find_if(text.begin() + from, text.end(), [](char c) {
        return c <= '\r' && (c == '\n' || c == '\r');
    });
    return static_cast<std::size_t>(end - text.begin());
}

std::size_t line_end_length(std::string_view text, std::size_t at) {
    const auto has = [&](std::size_t ahead, char c) {
        return at + ahead < text.size() && text[at + ahead] == c;
    };
    if (has(0, '\n') && has(1, '\r')) {
        return has(2, '\r') ? 3 : 2;
    }
    if (has(0, '\r') && has(1, '\r') && has(2, '\n')) {
        return 3;
    }
    if (has(0, '\r') && has(1, '\n')) {
        return 2;
    }
    return has(0, '\r') || has(0, '\n') ? 1 : 0;
}

std::size_t count_lines(std::string_view text) {
    std::size_t count = 0;
    for (Lines lines(text); !lines.at_end(); lines.take()) {
        ++count;
    }
    return count;
}

std::string_view without_end_mark(std::string_view text) {
    constexpr char end_mark = '\x1A';
    constexpr std::string_view padding("\0\r\n\x1A", 4);
    const std::size_t behind_program = text.find_last_not_of(padding) + 1;
    return text.substr(0, text.find(end_mark, behind_program));
}

}  // namespace kelvane
