#include "desktop/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

#include "desktop/qt_text.h"

namespace kelvane {

Elided_label::Elided_label() {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

Elided_label::Elided_label(int characters) : characters_(characters) {
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
}

QSize Elided_label::sizeHint() const {
    const QSize usual = QLabel::sizeHint();
    const int most = fontMetrics().horizontalAdvance('0') * characters_;
    return characters_ == 0 ? usual : QSize(std::min(usual.width(), most), usual.height());
}

QSize Elided_label::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

QString Elided_label::elided() const {
    return fontMetrics().elidedText(text(), characters_ == 0 ? Qt::ElideRight : Qt::ElideMiddle,
                                    contentsRect().width());
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
