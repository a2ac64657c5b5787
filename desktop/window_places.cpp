#include "desktop/window_places.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLayout>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>
#include <QWidget>

#include "desktop/qt_text.h"
#include "platform/lines.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

/// What a window manager puts around a window, at most.
constexpr QSize frame(16, 40);

constexpr int foot_gap = 9;  // pixels
constexpr int dense_gap = 4;

/// "Form=x,y,width,height"
QString line_of(const QString& name, const QRect& place) {
    return QString("%1=%2,%3,%4,%5\r\n")
        .arg(name)
        .arg(place.x())
        .arg(place.y())
        .arg(place.width())
        .arg(place.height());
}

/// The room of the screen on which a window has been; where there is none now, of its owner's.
QRect room_for(const QWidget& window, const QRect& known) {
    const QScreen* screen = known.isNull() ? nullptr : QGuiApplication::screenAt(known.center());
    const QWidget* owner = window.parentWidget();
    return (screen != nullptr ? screen : (owner != nullptr ? *owner : window).screen())
        ->availableGeometry();
}

/// What scrolls by itself has the height that is left over, and nothing stands further apart than
/// it must.
void make_dense(QWidget& content) {
    for (auto* layout : content.findChildren<QLayout*>()) {
        const int margin = qobject_cast<QLayout*>(layout->parent()) == nullptr ? dense_gap : 0;
        layout->setContentsMargins(margin, margin, margin, margin);
        layout->setSpacing(dense_gap);
    }
    for (auto* area : content.findChildren<QAbstractScrollArea*>()) {
        QSizePolicy policy = area->sizePolicy();
        policy.setVerticalPolicy(QSizePolicy::Ignored);
        policy.setVerticalStretch(1);
        area->setSizePolicy(policy);
    }
}

/// The last resort: what does not fit is scrolled, above the buttons of the foot.
void make_scrollable(QWidget& window) {
    QLayout* layout = window.layout();
    if (layout == nullptr || qobject_cast<QDialog*>(&window) == nullptr) {
        return;
    }
    auto* content = new QWidget;
    content->setLayout(layout);
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(content);
    area->setFocusPolicy(Qt::NoFocus);
    auto* outer = new QVBoxLayout(&window);
    outer->setContentsMargins(0, 0, 0, foot_gap);
    outer->addWidget(area, 1);
    if (auto* foot = content->findChild<QDialogButtonBox*>()) {
        foot->setContentsMargins(foot_gap, 0, foot_gap, 0);
        outer->addWidget(foot);
    }
    make_dense(*content);
}

/// Whole on the screen.
QRect moved_into(const QRect& screen, QRect place) {
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    place.moveLeft(std::max(place.left(), screen.left()));
    place.moveTop(std::max(place.top(), screen.top()));
    return place;
}

}  // namespace

void Window_places::use(Files& files) {
    files_ = &files;
    const auto read = files.read(files.program_path(file_names::window_places));
    unread_ = read.unreadable();
    const std::string text = read.value_or(std::string());
    static const QRegularExpression form(R"(^(.+)=(-?\d+),(-?\d+),(\d+),(\d+)$)");
    for (Lines lines(text); !lines.at_end();) {
        const auto match = form.match(to_screen(lines.take()));
        if (match.hasMatch()) {
            places_[match.captured(1)] = {match.captured(2).toInt(), match.captured(3).toInt(),
                                          match.captured(4).toInt(), match.captured(5).toInt()};
        }
    }
}

void Window_places::place(QWidget& window) {
    const auto found = places_.find(window.objectName());
    const QRect known = found == places_.end() ? QRect() : found->second;
    const QRect screen = room_for(window, known);
    const QSize room = screen.size() - frame;
    const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
    const bool set = window.testAttribute(Qt::WA_Resized);
    QSize usual = (set ? window.size() : window.sizeHint()).expandedTo(least);
    if (least.width() > room.width() || least.height() > room.height()) {
        make_scrollable(window);
        usual.rwidth() += window.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    }
    const QSize wanted = known.isNull() ? usual : known.size().expandedTo(least);
    window.resize(wanted.boundedTo(room));
    QRect place(known.topLeft(), window.size() + frame);
    const QWidget* owner = window.parentWidget();
    if (known.isNull() && owner != nullptr) {
        place.moveCenter(owner->frameGeometry().center());
    }
    if (!known.isNull() || owner != nullptr) {
        window.move(moved_into(screen, place).topLeft());
    }
    cut_[window.objectName()] = {{window.pos(), window.size()}, {place.topLeft(), wanted}};
}

void Window_places::remember(const QWidget& window) {
    const bool plain = (window.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)) == 0;
    const Cut& cut = cut_[window.objectName()];
    const QRect place(window.pos() == cut.to.topLeft() ? cut.from.topLeft() : window.pos(),
                      window.size() == cut.to.size() ? cut.from.size() : window.size());
    if (files_ == nullptr || unread_ || !plain || places_[window.objectName()] == place) {
        return;
    }
    places_[window.objectName()] = place;
    QString text;
    for (const auto& [name, known] : places_) {
        text += line_of(name, known);
    }
    // Without it windows open where they always have.
    static_cast<void>(
        files_->replace(files_->program_path(file_names::window_places), from_screen(text)));
}

}  // namespace kelvane
