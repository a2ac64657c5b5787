#include "desktop/text_map.h"

#include <algorithm>

#include "platform/lines.h"

namespace kelvane {

namespace {

/// A text widget takes seconds for a line of a megabyte.
constexpr std::size_t longest_line = 4096;

/// The first byte of the next line, or the text's length.
std::size_t next_start(std::string_view text, std::size_t from) {
    const std::size_t cut = std::min(from + longest_line, text.size());
    const std::size_t end = find_line_end(text.substr(0, cut), from);
    if (end < cut) {
        return end + line_end_length(text, end);
    }
    // A character of several UTF-8 bytes stays whole.
    const std::size_t last_cut = std::min(cut + 3, text.size());
    std::size_t next = cut;
    while (next < last_cut && (static_cast<unsigned char>(text[next]) & 0xC0U) == 0x80U) {
        ++next;
    }
    return next;
}

}  // namespace

Text_map::Text_map(std::string_view text) : starts_{0}, length_(text.size()) {
    for (std::size_t from = 0; from < text.size();) {
        from = next_start(text, from);
        const bool ended = text[from - 1] == '\n' || text[from - 1] == '\r';
        if (from < text.size() || ended) {
            starts_.push_back(from);
        }
    }
}

std::size_t Text_map::start(std::size_t line) const {
    return line < starts_.size() ? starts_[line] : length_;
}

std::size_t Text_map::line_at(std::size_t offset) const {
    const auto after = std::upper_bound(starts_.begin(), starts_.end(), offset);
    return static_cast<std::size_t>(after - starts_.begin()) - 1;
}

std::string_view Text_map::line(std::string_view text, std::size_t line) const {
    const std::string_view whole = text.substr(start(line), start(line + 1) - start(line));
    return whole.substr(0, find_line_end(whole));
}

}  // namespace kelvane
