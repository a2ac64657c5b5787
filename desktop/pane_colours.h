#pragma once

#include <QColor>
#include <QPalette>

#include "editing/block_words.h"

namespace kelvane {

/// The colours of a program on the screen, each with a contrast of 4.5 or more to its background.
struct Pane_colours {
    /// For a light or a dark palette, by the lightness of its base.
    explicit Pane_colours(const QPalette& palette);

    [[nodiscard]] QColor of(Word_kind kind) const;

    QColor text, background;
    QColor selection, selected_text;
    QColor numbers, margin;  ///< line numbers and what is behind them
    QColor band;             ///< behind the block that is being sent
    QColor band_mark;
    bool dark;
};

}  // namespace kelvane
