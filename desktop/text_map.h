#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kelvane {

/// Where the lines of a text begin, so that a byte offset is found in a time that hardly grows with
/// the text. Lines end as in `Lines`; one without an end in sight is cut.
class Text_map {
  public:
    Text_map() : starts_{0} {}
    explicit Text_map(std::string_view text);

    /// At least 1: an empty text is one empty line.
    [[nodiscard]] std::size_t line_count() const { return starts_.size(); }
    /// The offset of the line's first byte; the text's length for `line_count()`.
    [[nodiscard]] std::size_t start(std::size_t line) const;
    /// The line that holds the byte at `offset`; the last one for offsets beyond the end.
    [[nodiscard]] std::size_t line_at(std::size_t offset) const;
    /// The line's bytes in `text`, which is the mapped one, without the line end.
    [[nodiscard]] std::string_view line(std::string_view text, std::size_t line) const;

  private:
    std::vector<std::size_t> starts_;
    std::size_t length_ = 0;
};

}  // namespace kelvane
