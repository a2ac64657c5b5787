#include "desktop/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include "desktop/qt_text.h"

namespace kelvane {

Elided_label::Elided_label() {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QString Elided_label::elided() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

void Elided_label::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(),
                          isEnabled(), elided(), foregroundRole());
}

bool Elided_label::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const QString whole = text() == elided() ? QString() : tool_tip_of(text());
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), whole, this);
        return true;
    }
    return QLabel::event(event);
}

}  // namespace kelvane
