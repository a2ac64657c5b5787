#include "editing/text_view.h"

#include <algorithm>

#include "platform/lines.h"

namespace kelvane {

namespace {

/// Columns from `column` on that the byte takes: none inside a character.
std::size_t columns_of(char byte, std::size_t column, Text_encoding encoding) {
    if (byte == '\t') {
        return Text_view::tab_width - column % Text_view::tab_width;
    }
    return encoding == Text_encoding::utf8 && is_continuation(byte) ? 0 : 1;
}

std::string_view without_line_end(std::string_view line) {
    return line.substr(0, line.find_last_not_of("\r\n") + 1);
}

}  // namespace

std::size_t Text_view::line_start(std::size_t line) const {
    return index->line_start(bytes, line);
}

std::size_t Text_view::line_at(std::size_t offset) const {
    return index->line_at(bytes, offset);
}

std::string_view Text_view::line(std::size_t line) const {
    const std::size_t start = line_start(line);
    return without_line_end(bytes.substr(start, line_start(line + 1) - start));
}

std::vector<Text_view::Line> Text_view::lines(std::size_t first, std::size_t last) const {
    std::vector<Line> lines;
    std::size_t begin = line_start(first);
    for (std::size_t number = first; number <= last && number < line_count(); ++number) {
        const std::size_t next = line_start(number + 1);
        lines.push_back(
            {number, begin, begin + without_line_end(bytes.substr(begin, next - begin)).size()});
        begin = next;
    }
    return lines;
}

std::size_t Text_view::line_end(std::size_t wanted) const {
    const std::string_view text = line(wanted);
    return static_cast<std::size_t>(text.data() - bytes.data()) + text.size();
}

std::size_t Text_view::position_of(std::size_t offset) const {
    return index->unit_at(bytes, offset);
}

std::size_t Text_view::offset_of(std::size_t position) const {
    return index->offset_of_unit(bytes, position);
}

std::u16string Text_view::shown(std::size_t from, std::size_t to) const {
    return shown_text(bytes.substr(from, to - from), encoding);
}

std::size_t Text_view::next(std::size_t offset) const {
    if (offset >= bytes.size()) {
        return bytes.size();
    }
    offset += std::max<std::size_t>(line_end_length(bytes, offset), 1);
    while (encoding == Text_encoding::utf8 && offset < bytes.size() &&
           is_continuation(bytes[offset])) {
        ++offset;
    }
    return offset;
}

std::size_t Text_view::previous(std::size_t offset) const {
    if (offset == 0) {
        return 0;
    }
    --offset;
    if (bytes[offset] == '\r' || bytes[offset] == '\n') {
        return line_end(line_at(offset));
    }
    while (encoding == Text_encoding::utf8 && offset > 0 && is_continuation(bytes[offset])) {
        --offset;
    }
    return offset;
}

std::size_t Text_view::column_of(std::size_t offset) const {
    const std::size_t number = line_at(offset);
    const std::size_t start = line_start(number);
    const std::string_view text = line(number);
    offset = std::min(offset, start + text.size());
    if (text.size() > long_line) {
        return position_of(offset) - position_of(start);
    }
    std::size_t column = 0;
    for (const char byte : text.substr(0, offset - start)) {
        column += columns_of(byte, column, encoding);
    }
    return column;
}

std::size_t Text_view::offset_at(std::size_t wanted, std::size_t column) const {
    const std::size_t start = line_start(wanted);
    const std::string_view text = line(wanted);
    if (text.size() > long_line) {
        return std::min(offset_of(position_of(start) + column), start + text.size());
    }
    std::size_t passed = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t columns = columns_of(text[i], passed, encoding);
        if (columns > 0 && passed + columns > column) {
            return start + i;
        }
        passed += columns;
    }
    return start + text.size();
}

}  // namespace kelvane
