#pragma once

#include <QFont>
#include <QPainter>
#include <QPointF>
#include <QRect>
#include <optional>

#include "desktop/pane_colours.h"
#include "editing/caret.h"
#include "editing/program_pane.h"
#include "editing/text_view.h"

namespace kelvane {

/// How the pane's text lies on the screen: lines of one height, columns of one width.
struct Pane_layout {
    qreal column_width = 1;
    int line_height = 1;
    int ascent = 1;
    int margin = 0;        ///< width of the line numbers' margin, pixels
    std::size_t top = 0;   ///< first line shown
    std::size_t left = 0;  ///< first column shown
    bool fixed_pitch = true;

    /// Pixels between the margin and the text, for the caret before the first character.
    static constexpr int text_gap = 3;

    /// The left edge of a column; may be outside of what is seen.
    [[nodiscard]] qreal x_of(std::size_t column) const;
    [[nodiscard]] int y_of(std::size_t line) const;
};

/// Paints lines of a text, and of each no more than is seen.
class Pane_painter {
  public:
    Pane_painter(QPainter& painter, const Pane_layout& layout, const Pane_colours& colours,
                 const Text_view& text);

    std::optional<Program_pane::Band> band;
    Caret caret;
    bool has_focus = false;

    /// Paints what is inside of `area`. The value is the number of columns of the longest line.
    std::size_t paint(const QRect& area);

  private:
    /// Characters side by side that look the same.
    struct Run {
        QString text;
        std::size_t column = 0;
        QColor colour;
    };

    using Line = Text_view::Line;

    void begin_line(const Line& line, const QRect& area);
    void paint_margin(std::size_t line, bool in_band);
    void paint_selection(const Line& line, int right);
    std::size_t paint_block(const Line& line, std::size_t end_column);
    std::size_t paint_part_of_long_line(const Line& line, std::size_t end_column);
    std::size_t add_character(std::size_t at, std::size_t column, QColor colour);
    void paint_control(char byte, std::size_t column, QColor cell, QColor letter);
    void add(const QString& text, std::size_t column, const QColor& colour, bool alone);
    void flush();
    void paint_caret(std::size_t line);
    [[nodiscard]] bool is_in_band(const Line& line) const;

    QPainter& painter_;
    const Pane_layout& layout_;
    const Pane_colours& colours_;
    const Text_view& text_;
    Run run_;
    int baseline_ = 0;  ///< of the line that is being painted
};

}  // namespace kelvane
