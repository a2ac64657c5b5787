#include "desktop/modality.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QKeyEvent>
#include <QWindow>

namespace kelvane {

namespace {

constexpr const char* live_property = "takes_input_always";

bool is_input(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::Shortcut:
        case QEvent::ContextMenu:
        case QEvent::InputMethod:
        case QEvent::TouchBegin:
        case QEvent::DragEnter:
        case QEvent::Drop:
            return true;
        default:
            return false;
    }
}

bool is_focus_key(const QEvent& event) {
    if (event.type() != QEvent::KeyPress) {
        return false;
    }
    const int key = static_cast<const QKeyEvent&>(event).key();
    return key == Qt::Key_Tab || key == Qt::Key_Backtab;
}

/// The widget that an object is, or that a menu item or a shortcut belongs to; null for others.
const QWidget* widget_of(const QObject& object) {
    const auto* action = qobject_cast<const QAction*>(&object);
    if (action != nullptr && !action->associatedObjects().isEmpty()) {
        return qobject_cast<const QWidget*>(action->associatedObjects().first());
    }
    const auto* widget = qobject_cast<const QWidget*>(&object);
    return widget != nullptr ? widget : qobject_cast<const QWidget*>(object.parent());
}

/// What a field proposes while something is typed into it pops up without a parent, and hands the
/// keys on to its field. Pop-ups of windows that are blocked now have closed.
bool is_proposal(const QWidget& widget) {
    const QWidget& window = *widget.window();
    return window.windowType() == Qt::Popup && window.parentWidget() == nullptr;
}

QWidget* first_live(const QWidget& window) {
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->property(live_property).toBool() && widget->isEnabled()) {
            return widget;
        }
    }
    return nullptr;
}

}  // namespace

Modality::Modality() {
    QApplication::instance()->installEventFilter(this);
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &Modality::see_active_window,
            Qt::QueuedConnection);
}

/// While a field's proposals are open the toolkit does not look which window is the active one.
/// When Return has closed them with their dialog, no window is, and no key reaches a field.
void Modality::see_active_window() {
    const QWindow* const focus = QGuiApplication::focusWindow();
    if (focus == nullptr || QApplication::activeWindow() != nullptr ||
        QApplication::activePopupWidget() != nullptr) {
        return;
    }
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->windowHandle() == focus) {
            QT_WARNING_PUSH
            QT_WARNING_DISABLE_DEPRECATED
            QApplication::setActiveWindow(window);
            QT_WARNING_POP
        }
    }
}

void Modality::begin(QWidget& window) {
    while (QWidget* menu = QApplication::activePopupWidget()) {
        menu->close();
    }
    end(&window);
    windows_.push_back(&window);
    connect(&window, &QObject::destroyed, this, &Modality::end, Qt::UniqueConnection);
}

void Modality::end(const QObject* window) {
    std::erase_if(windows_, [window](const QObject* modal) { return modal == window; });
}

void Modality::keep_live(QObject& taker) {
    taker.setProperty(live_property, true);
}

bool Modality::blocks(const QObject& watched) const {
    const QWidget* const modal = top();
    const QWidget* widget = modal == nullptr ? nullptr : widget_of(watched);
    if (widget == nullptr || is_proposal(*widget) || watched.property(live_property).toBool()) {
        return false;
    }
    // What a window opens (a list that drops down, a question) has it among its parents.
    for (; widget != nullptr; widget = widget->parentWidget()) {
        if (widget == modal || widget->property(live_property).toBool()) {
            return false;
        }
    }
    return true;
}

bool Modality::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        take_over(*watched);
    } else if (event->type() == QEvent::Hide && !event->spontaneous()) {
        end(watched);
    }
    const bool closes_other = event->type() == QEvent::Close && watched->parent() != nullptr;
    if ((!is_input(event->type()) && !closes_other) || !blocks(*watched)) {
        return false;
    }
    event->setAccepted(!closes_other);
    if (auto* widget = qobject_cast<QWidget*>(watched)) {
        refuse(*widget, *event);
    }
    return true;
}

void Modality::take_over(QObject& shown) {
    auto* dialog = qobject_cast<QDialog*>(&shown);
    if (dialog != nullptr && dialog->isModal()) {
        dialog->setWindowModality(Qt::NonModal);
        begin(*dialog);
    }
}

/// A press beside the modal window brings it to the front; the tabulator leads from where nothing
/// can be typed to what is live.
void Modality::refuse(QWidget& widget, const QEvent& event) const {
    QWidget* const live = is_focus_key(event) ? first_live(*widget.window()) : nullptr;
    if (live != nullptr) {
        live->setFocus(Qt::TabFocusReason);
    } else if (event.type() == QEvent::MouseButtonPress) {
        top()->raise();
        top()->activateWindow();
    }
}

}  // namespace kelvane
