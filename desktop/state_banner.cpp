#include "desktop/state_banner.h"

#include <QAccessibleWidget>
#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "desktop/drawn_icons.h"
#include "desktop/qt_text.h"

namespace kelvane {

namespace {

using Kind = State_field::Kind;

/// White letters on each have a contrast of more than 4.5.
QColor colour_of(Kind kind) {
    switch (kind) {
        case Kind::waiting:
            return {0x1f, 0x5f, 0xa8};
        case Kind::held:
        case Kind::stopped:
            return {0x9c, 0x52, 0x00};
        case Kind::failed:
            return {0xb3, 0x26, 0x1e};
        default:
            return {0x1b, 0x6e, 0x38};
    }
}

Drawing drawing_of(Kind kind) {
    switch (kind) {
        case Kind::waiting:
            return Drawing::wait;
        case Kind::held:
            return Drawing::pause;
        case Kind::stopped:
            return Drawing::halt;
        case Kind::failed:
            return Drawing::failed;
        case Kind::done:
            return Drawing::done;
        default:
            return Drawing::play;
    }
}

std::string all_details(const State_field::View& view) {
    return view.details + (view.advice.empty() ? "" : "\n" + view.advice);
}

/// Larger than other letters by so much: to be read from three metres.
constexpr qreal enlargement = 2.6;
constexpr int gap = 8;  // pixels

/// A notification: readers speak it when it is shown anew, where they know no alerts.
class Banner_accessible : public QAccessibleWidget {
  public:
    Banner_accessible(QWidget& banner, const State_field& field)
        : QAccessibleWidget(&banner, QAccessible::Notification), field_(field) {}

    QString text(QAccessible::Text kind) const override {
        const State_field::View& view = field_.view();
        switch (kind) {
            case QAccessible::Name:
                return to_screen(view.words);
            case QAccessible::Description:
                return to_screen(all_details(view));
            default:
                return QAccessibleWidget::text(kind);
        }
    }

  private:
    const State_field& field_;
};

QAccessibleInterface* make_banner_interface(const QString&, QObject* object) {
    auto* banner = dynamic_cast<State_banner*>(object);
    return banner == nullptr ? nullptr : new Banner_accessible(*banner, banner->field());
}

}  // namespace

State_banner::State_banner(State_field& field) : field_(field), pace_([this] { refresh(); }) {
    QAccessible::installFactory(make_banner_interface);  // which is kept once
    setObjectName(to_screen(field.name()));
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    field_.observe([this] {
        // Another state is shown at once, progress in its time.
        if (field_.view().kind != shown_.kind || field_.view().words != shown_.words) {
            pace_.run();
        } else {
            pace_.request();
        }
    });
    pace_.run();
}

void State_banner::refresh() {
    const State_field::View before = shown_;
    shown_ = field_.view();
    setVisible(shown_.kind != Kind::none);
    if (shown_.advice != before.advice) {
        updateGeometry();
    }
    if (shown_.words != before.words || shown_.advice != before.advice) {
        announce();
    }
    setToolTip(tool_tip_of(to_screen(all_details(shown_))));
    update();
}

void State_banner::announce() {
    for (const auto kind :
         {QAccessible::NameChanged, QAccessible::ObjectShow, QAccessible::Alert}) {
        QAccessibleEvent event(this, kind);
        QAccessible::updateAccessibility(&event);
    }
}

QFont State_banner::large_font() const {
    QFont large = font();
    large.setPointSizeF(font().pointSizeF() * enlargement);
    large.setBold(true);
    return large;
}

int State_banner::advice_lines() const {
    return shown_.advice.empty()
               ? 0
               : 1 + static_cast<int>(std::count(shown_.advice.begin(), shown_.advice.end(), '\n'));
}

QSize State_banner::sizeHint() const {
    const int large = QFontMetrics(large_font()).height();
    const int lines = 1 + advice_lines();
    return {0, large + lines * fontMetrics().lineSpacing() + 2 * gap};
}

void State_banner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), colour_of(shown_.kind));
    painter.setPen(Qt::white);
    const QFont large = large_font();
    const QFontMetrics metrics(large);
    const int picture = metrics.ascent();
    paint_drawing(painter, QRectF(gap, gap + metrics.descent() / 2.0, picture, picture),
                  drawing_of(shown_.kind), Qt::white);
    const QRect top(picture + 2 * gap, gap, width() - picture - 3 * gap, metrics.height());
    const QString share = to_screen(shown_.share);
    painter.setFont(large);
    painter.drawText(top, Qt::AlignRight | Qt::AlignVCenter, share);
    const int room = top.width() - (share.isEmpty() ? 0 : metrics.horizontalAdvance(share) + gap);
    painter.drawText(top, Qt::AlignLeft | Qt::AlignVCenter,
                     metrics.elidedText(to_screen(shown_.words), Qt::ElideRight, room));
    painter.setFont(font());
    QRect line(gap, top.bottom() + 1, width() - 2 * gap, fontMetrics().lineSpacing());
    for (const QString& text :
         (to_screen(shown_.details) + (advice_lines() > 0 ? "\n" : "") + to_screen(shown_.advice))
             .split('\n')) {
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(text, Qt::ElideRight, line.width()));
        line.translate(0, line.height());
    }
}

}  // namespace kelvane
