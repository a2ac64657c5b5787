#include "desktop/drawn_icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include "desktop/outline_data.h"

namespace kelvane {

namespace {

const char* data_of(Drawing drawing) {
    switch (drawing) {
        case Drawing::new_program:
            return "M5 2h9l5 5v15h-14z M7 4v16h10v-12h-4v-4z";
        case Drawing::open:
            return "M2 5h7l2 2h9v3h-14l-4 9z M7 11h16l-4 9h-16z";
        case Drawing::save:
            return "M3 3h15l3 3v15h-18z M7 4v6h9v-6z M13 5h2v4h-2z M6 13v7h12v-7z";
        case Drawing::undo:
            return "M3 9l7-6v4c7 0 11 4 11 12c-2-5-5-7-11-7v4z";
        case Drawing::redo:
            return "M21 9l-7-6v4c-7 0-11 4-11 12c2-5 5-7 11-7v4z";
        case Drawing::find:
            return "M10 3c4 0 7 3 7 7c0 1 0 2-1 3l6 6l-3 3l-6-6c-1 1-2 1-3 1c-4 0-7-3-7-7c0-4 3-7 "
                   "7-7z M10 6c-2 0-4 2-4 4c0 2 2 4 4 4c2 0 4-2 4-4c0-2-2-4-4-4z";
        case Drawing::send:
            return "M2 4h8v3h-5v10h5v3h-8z M8 10h7v-5l7 7l-7 7v-5h-7z";
        case Drawing::receive:
            return "M22 4h-8v3h5v10h-5v3h8z M16 10h-7v-5l-7 7l7 7v-5h7z";
        case Drawing::stop:
        case Drawing::halt:
            return "M5 5h14v14h-14z";
        case Drawing::monitor:
            return "M2 11h4l3-7l5 14l3-7h5v2h-4l-4 9l-5-14l-2 5h-5z";
        case Drawing::play:
            return "M6 3l15 9l-15 9z";
        case Drawing::wait:
            return "M5 2h14v3l-5 7l5 7v3h-14v-3l5-7l-5-7z";
        case Drawing::pause:
            return "M5 4h5v16h-5z M14 4h5v16h-5z";
        case Drawing::done:
            return "M2 13l3-3l5 5l10-11l3 3l-13 14z";
        case Drawing::failed:
            return "M5 2l7 7l7-7l3 3l-7 7l7 7l-3 3l-7-7l-7 7l-3-3l7-7l-7-7z";
    }
    return "";
}

/// Holes are drawn as outlines of their own within another.
bool has_holes(Drawing drawing) {
    return drawing == Drawing::new_program || drawing == Drawing::save || drawing == Drawing::find;
}

class Drawing_engine : public QIconEngine {
  public:
    explicit Drawing_engine(Drawing drawing) : drawing_(drawing) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        paint_drawing(*painter, rect, drawing_,
                      QApplication::palette().color(group, QPalette::ButtonText));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new Drawing_engine(drawing_); }

  private:
    Drawing drawing_;
};

}  // namespace

QPainterPath outline_of(Drawing drawing) {
    QPainterPath path = outline_from(data_of(drawing));
    path.setFillRule(has_holes(drawing) ? Qt::OddEvenFill : Qt::WindingFill);
    return path;
}

QIcon icon_of(Drawing drawing) {
    return QIcon(new Drawing_engine(drawing));
}

void paint_drawing(QPainter& painter, const QRectF& area, Drawing drawing, const QColor& colour) {
    constexpr qreal field = 24;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(area.topLeft());
    painter.scale(area.width() / field, area.height() / field);
    painter.fillPath(outline_of(drawing), colour);
    painter.restore();
}

}  // namespace kelvane
