#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "editing/line_index.h"
#include "editing/text_encoding.h"

namespace kelvane {

/// A text and where its lines begin, for reading; both belong to somebody else and must stay as
/// they are as long as the view is used. Offsets are in bytes.
struct Text_view {
    std::string_view bytes;
    const Line_index* index = nullptr;
    Text_encoding encoding = Text_encoding::latin1;

    /// Lines longer than this many bytes are too long to be read as blocks: a tab in them takes one
    /// column.
    static constexpr std::size_t long_line = std::size_t{1} << 16;
    /// Columns from one tab stop to the next.
    static constexpr std::size_t tab_width = 8;

    [[nodiscard]] std::size_t line_count() const { return index->line_count(); }
    [[nodiscard]] std::size_t line_start(std::size_t line) const;
    [[nodiscard]] std::size_t line_at(std::size_t offset) const;
    /// The line without its line end; empty for lines that do not exist.
    [[nodiscard]] std::string_view line(std::size_t line) const;
    /// Offset of the line's end, behind its last character.
    [[nodiscard]] std::size_t line_end(std::size_t line) const;
    /// Offsets of a line: `begin` of its first character, `end` behind its last.
    struct Line {
        std::size_t number = 0;
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    /// The lines `first` to `last`, as far as there are such: faster than one by one.
    [[nodiscard]] std::vector<Line> lines(std::size_t first, std::size_t last) const;
    /// UTF-16 units before a byte, every line end counting one.
    [[nodiscard]] std::size_t position_of(std::size_t offset) const;
    [[nodiscard]] std::size_t offset_of(std::size_t position) const;
    /// Characters of a range of bytes, as a widget shows them.
    [[nodiscard]] std::u16string shown(std::size_t from, std::size_t to) const;

    /// The next character's first byte, a CR LF being one; the end of the text at its end.
    [[nodiscard]] std::size_t next(std::size_t offset) const;
    [[nodiscard]] std::size_t previous(std::size_t offset) const;

    /// Columns of the screen before the byte at `offset` in its line.
    [[nodiscard]] std::size_t column_of(std::size_t offset) const;
    /// The character of `line` that covers `column`; the line's end when it is shorter.
    [[nodiscard]] std::size_t offset_at(std::size_t line, std::size_t column) const;
};

}  // namespace kelvane
