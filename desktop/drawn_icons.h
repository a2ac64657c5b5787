#pragma once

#include <QColor>
#include <QIcon>
#include <QPainterPath>

namespace kelvane {

/// The program's own pictures, drawn as outlines on a field of 24 by 24 and filled with a colour:
/// so they go with every colour scheme and are sharp at every size.
enum class Drawing : char {
    new_program,
    open,
    save,
    undo,
    redo,
    find,
    send,
    receive,
    stop,
    monitor,
    play,
    wait,
    pause,
    done,
    halt,
    failed,
};

/// The outline, in units of the field.
[[nodiscard]] QPainterPath outline_of(Drawing drawing);

/// Filled with the colour of `palette_of`'s button texts, paler when disabled; a change of the
/// colour scheme is followed.
[[nodiscard]] QIcon icon_of(Drawing drawing);

/// Paints it into `area`.
void paint_drawing(QPainter& painter, const QRectF& area, Drawing drawing, const QColor& colour);

}  // namespace kelvane
