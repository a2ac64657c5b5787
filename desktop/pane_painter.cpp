#include "desktop/pane_painter.h"

#include <algorithm>

#include "editing/block_words.h"

namespace kelvane {

namespace {

bool is_plain(char byte) {
    return byte > ' ' && byte < 0x7F;
}

}  // namespace

qreal Pane_layout::x_of(std::size_t column) const {
    const auto columns = static_cast<qreal>(column) - static_cast<qreal>(left);
    return margin + text_gap + columns * column_width;
}

int Pane_layout::y_of(std::size_t line) const {
    return static_cast<int>(line - top) * line_height;
}

Pane_painter::Pane_painter(QPainter& painter, const Pane_layout& layout,
                           const Pane_colours& colours, const Text_view& text)
    : painter_(painter), layout_(layout), colours_(colours), text_(text) {}

std::size_t Pane_painter::paint(const QRect& area) {
    painter_.fillRect(area, colours_.background);
    const auto height = layout_.line_height;
    const std::size_t first = layout_.top + static_cast<std::size_t>(area.top() / height);
    const std::size_t last = layout_.top + static_cast<std::size_t>(area.bottom() / height);
    const auto columns = static_cast<std::size_t>(
        std::max(0.0, (area.right() - layout_.margin) / layout_.column_width) + 2);
    const std::vector<Line> lines = text_.lines(first, last);
    const std::size_t caret_line = text_.line_at(caret.place());
    std::size_t longest = 0;
    for (const Line& line : lines) {
        begin_line(line, area);
        const bool is_long = line.end - line.begin > Text_view::long_line;
        const std::size_t end = layout_.left + columns;
        longest = std::max(longest,
                           is_long ? paint_part_of_long_line(line, end) : paint_block(line, end));
        if (line.number == caret_line) {
            paint_caret(line.number);
        }
    }
    painter_.fillRect(QRect(0, area.top(), layout_.margin, area.height()), colours_.margin);
    for (const Line& line : lines) {
        paint_margin(line.number, is_in_band(line));
    }
    return longest;
}

bool Pane_painter::is_in_band(const Line& line) const {
    return band && band->begin <= line.end && band->begin + band->length > line.begin;
}

/// What is behind the text.
void Pane_painter::begin_line(const Line& line, const QRect& area) {
    const int y = layout_.y_of(line.number);
    if (is_in_band(line)) {
        painter_.fillRect(QRect(area.left(), y, area.width(), layout_.line_height), colours_.band);
    }
    paint_selection(line, area.right());
    baseline_ = y + layout_.ascent;
}

void Pane_painter::paint_selection(const Line& line, int right) {
    if (!caret.selects() || caret.begin() > line.end || caret.end() <= line.begin) {
        return;
    }
    const qreal from = layout_.x_of(text_.column_of(std::max(caret.begin(), line.begin)));
    qreal to = layout_.x_of(text_.column_of(std::min(caret.end(), line.end)));
    if (caret.end() > line.end) {
        to += layout_.column_width / 2;  // the line end is selected, too
    }
    const qreal seen_from = std::max<qreal>(from, layout_.margin + Pane_layout::text_gap);
    const qreal seen_to = std::min<qreal>(to, right + 1);
    if (seen_to > seen_from) {
        painter_.fillRect(
            QRectF(seen_from, layout_.y_of(line.number), seen_to - seen_from, layout_.line_height),
            colours_.selection);
    }
}

/// The value is the number of columns of the line.
std::size_t Pane_painter::paint_block(const Line& line, std::size_t end_column) {
    Block_reader reader(text_.bytes.substr(line.begin, line.end - line.begin));
    Block_word word;
    bool more = reader.next(word);
    std::size_t column = 0;
    for (std::size_t at = line.begin; at < line.end; at = text_.next(at)) {
        const std::size_t i = at - line.begin;
        while (more && i >= word.begin + word.length) {
            more = reader.next(word);
        }
        const bool in_word = more && i >= word.begin;
        if (column >= end_column) {
            break;
        }
        column = add_character(at, column, in_word ? colours_.of(word.kind) : colours_.text);
    }
    flush();
    return column < end_column ? column : text_.column_of(line.end);
}

std::size_t Pane_painter::paint_part_of_long_line(const Line& line, std::size_t end_column) {
    std::size_t column = layout_.left;
    for (std::size_t at = text_.offset_at(line.number, column);
         at < line.end && column < end_column; at = text_.next(at)) {
        const std::size_t behind = add_character(at, column, colours_.text);
        column = text_.bytes[at] == '\t' ? column + 1 : behind;
    }
    flush();
    return text_.column_of(line.end);
}

/// The value is the column behind the character.
std::size_t Pane_painter::add_character(std::size_t at, std::size_t column, QColor colour) {
    const char byte = text_.bytes[at];
    const bool selected = caret.selects() && at >= caret.begin() && at < caret.end();
    if (selected) {
        colour = colours_.selected_text;
    }
    if (byte == '\t') {
        return column + Text_view::tab_width - column % Text_view::tab_width;
    }
    if (is_control(byte) && column + 1 > layout_.left) {
        paint_control(byte, column, colour, selected ? colours_.selection : colours_.background);
    } else if (byte != ' ' && column + 1 > layout_.left) {
        const bool plain = is_plain(byte);
        const QString shown = plain ? QString(QLatin1Char(byte))
                                    : QString::fromStdU16String(text_.shown(at, text_.next(at)));
        add(shown, column, colour, !plain || !layout_.fixed_pitch);
    }
    return column + 1;
}

/// The letter that makes it with Ctrl, reversed: many fonts have no pictures of control characters.
void Pane_painter::paint_control(char byte, std::size_t column, QColor cell, QColor letter) {
    flush();
    const qreal x = layout_.x_of(column);
    painter_.fillRect(QRectF(x, baseline_ - layout_.ascent + 1, layout_.column_width - 1,
                             layout_.line_height - 2),
                      cell);
    painter_.setPen(letter);
    painter_.drawText(QPointF(x, baseline_), QString(QLatin1Char(static_cast<char>(byte ^ 0x40))));
}

/// Characters that may not be as wide as a column are painted one by one.
void Pane_painter::add(const QString& text, std::size_t column, const QColor& colour, bool alone) {
    const std::size_t behind = run_.column + static_cast<std::size_t>(run_.text.size());
    if (alone || behind != column || run_.colour != colour) {
        flush();
        run_ = {{}, column, colour};
    }
    run_.text += text;
    if (alone) {
        flush();
    }
}

void Pane_painter::flush() {
    if (!run_.text.isEmpty()) {
        painter_.setPen(run_.colour);
        painter_.drawText(QPointF(layout_.x_of(run_.column), baseline_), run_.text);
    }
    run_ = {};
}

void Pane_painter::paint_caret(std::size_t line) {
    const qreal x = layout_.x_of(text_.column_of(caret.place()));
    // Before the character, not on it.
    painter_.fillRect(QRectF(x - 2, layout_.y_of(line), has_focus ? 2 : 1, layout_.line_height),
                      has_focus ? colours_.text : colours_.numbers);
}

void Pane_painter::paint_margin(std::size_t line, bool in_band) {
    const int y = layout_.y_of(line);
    const int gap = static_cast<int>(layout_.column_width / 2);
    painter_.setPen(in_band ? colours_.text : colours_.numbers);
    painter_.drawText(QRect(0, y, layout_.margin - 2 * gap, layout_.line_height),
                      Qt::AlignRight | Qt::AlignVCenter, QString::number(line + 1));
    if (in_band) {
        const int size = layout_.line_height / 2;
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(colours_.band_mark);
        painter_.drawPolygon(QPolygon({QPoint(1, y + size / 2), QPoint(1, y + 3 * size / 2),
                                       QPoint(1 + size / 2, y + size)}));
    }
}

}  // namespace kelvane
