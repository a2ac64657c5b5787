#include "desktop/text_map.h"

#include <algorithm>

namespace kelvane {

namespace {

/// A text widget takes seconds for a line of a megabyte.
constexpr std::size_t longest_line = 4096;
constexpr std::string_view line_ends = "\r\n";

/// The first byte of the next line, or the text's length.
std::size_t next_start(std::string_view text, std::size_t from) {
    const std::string_view ahead = text.substr(from, longest_line);
    const auto found = std::find_if(ahead.begin(), ahead.end(),
                                    [](char byte) { return byte == '\r' || byte == '\n'; });
    if (found != ahead.end()) {
        const auto end = static_cast<std::size_t>(found - ahead.begin());
        const bool pair = text.substr(from + end, 2) == line_ends;
        return from + end + (pair ? 2 : 1);
    }
    // A character of several UTF-8 bytes stays whole.
    const std::size_t cut = from + ahead.size();
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
    return whole.substr(0, whole.find_first_of(line_ends));
}

}  // namespace kelvane
