#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "editing/text_encoding.h"

namespace kelvane {

/// Where the lines of a text begin, and where its characters stand as a text widget counts them.
/// Line ends are those of `Lines`. It keeps a mark every few thousand bytes, however long or short
/// the lines are: less than a hundredth of the text, and every look-up reads some thousand bytes of
/// the text and no more.
///
/// It does not keep the text: the same one is handed to every call.
class Line_index {
  public:
    explicit Line_index(Text_encoding encoding = Text_encoding::latin1) : encoding_(encoding) {}

    /// Counts the next `budget` bytes of `text`, and the rest of a line end. True when all is
    /// counted; until then the numbers are those of the part counted.
    bool extend(std::string_view text, std::size_t budget = std::string_view::npos);
    /// `text` is the text after `removed` bytes at `at` have given way to `added` others.
    void edited(std::string_view text, std::size_t at, std::size_t removed, std::size_t added);

    /// At least 1: an empty text is one empty line, and after a line end at the end stands one.
    [[nodiscard]] std::size_t line_count() const { return end_.lines + 1; }
    /// The offset of the line's first byte; the end of the text for lines that do not exist.
    [[nodiscard]] std::size_t line_start(std::string_view text, std::size_t line) const;
    /// The line that holds the byte at `offset`; the last one for offsets beyond the end.
    [[nodiscard]] std::size_t line_at(std::string_view text, std::size_t offset) const;

    /// Length of the text in UTF-16 units, a line end of any kind counting one.
    [[nodiscard]] std::size_t unit_count() const { return end_.units; }
    /// Units before the byte at `offset`.
    [[nodiscard]] std::size_t unit_at(std::string_view text, std::size_t offset) const;
    /// The first byte of the character at `unit`; the end of the text for units beyond it.
    [[nodiscard]] std::size_t offset_of_unit(std::string_view text, std::size_t unit) const;

  private:
    /// What stands before a byte that begins a character or a line end.
    struct Mark {
        std::size_t offset = 0;
        std::size_t lines = 0;  ///< line ends
        std::size_t units = 0;
    };

    [[nodiscard]] Mark behind(std::string_view text, Mark mark) const;
    [[nodiscard]] Mark counted_to(std::string_view text, std::size_t offset) const;
    void add_mark(const Mark& mark);
    [[nodiscard]] Mark mark_before(std::size_t value, std::size_t Mark::*measure) const;

    Text_encoding encoding_;
    std::vector<Mark> marks_{Mark{}};  ///< ascending; the first is that of offset 0
    Mark end_;                         ///< of what has been counted
};

}  // namespace kelvane
