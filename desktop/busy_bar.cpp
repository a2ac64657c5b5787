#include "desktop/busy_bar.h"

#include <QStyleOptionProgressBar>
#include <QStylePainter>
#include <QTimerEvent>

namespace kelvane {

namespace {

constexpr int pace = 1000;  // milliseconds
constexpr int blocks = 8;   // in the width of the bar

}  // namespace

Busy_bar::Busy_bar(QWidget* parent) : QProgressBar(parent) {}

void Busy_bar::paintEvent(QPaintEvent* event) {
    if (!is_busy()) {
        pace_.stop();
        QProgressBar::paintEvent(event);
        return;
    }
    if (!pace_.isActive()) {
        pace_.start(pace, this);
    }
    QStyleOptionProgressBar option;
    initStyleOption(&option);
    QStylePainter painter(this);
    painter.drawControl(QStyle::CE_ProgressBarGroove, option);
    painter.fillRect(block(), palette().highlight());
}

QRect Busy_bar::block() const {
    const QRect inside = rect().adjusted(2, 2, -2, -2);
    const int width = inside.width() / blocks;
    return {inside.left() + step_ * width, inside.top(), width, inside.height()};
}

// Only what changes is painted anew: larger areas are shared among threads, which wakes those
// too. And at once: later would be one more wake-up.
void Busy_bar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != pace_.timerId()) {
        QProgressBar::timerEvent(event);
        return;
    }
    if (!is_busy() || !isVisible()) {
        pace_.stop();
        return;
    }
    const QRect before = block();
    step_ = (step_ + 1) % blocks;
    repaint(QRegion(before) + block());
}

}  // namespace kelvane
