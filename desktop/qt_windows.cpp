#include "desktop/qt_windows.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <algorithm>
#include <utility>

#include "desktop/event_filter.h"
#include "desktop/qt_text.h"

namespace kelvane {

namespace {

/// Qt takes "[*]" in a title for the mark of a changed document, unless it stands twice.
QString title_of(const Form& form) {
    return to_screen(form.caption()).replace("[*]", "[*][*]");
}

/// Hands the operator's wish to close the window to the form, which hides or unloads it.
bool close_by_form(Form& form, const QWidget& window, QEvent& event) {
    if (event.type() == QEvent::Close) {
        event.ignore();
        form.close();
        return true;
    }
    const bool escape = event.type() == QEvent::KeyPress &&
                        static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
    if (escape && qobject_cast<const QDialog*>(&window) != nullptr) {
        form.close();
        return true;
    }
    return false;
}

/// A dialog begins where it has begun the first time, not where it was left.
void focus_first(const QWidget& window) {
    QWidget* left = window.focusWidget();
    if (left != nullptr && qobject_cast<const QDialog*>(&window) != nullptr) {
        left->clearFocus();
    }
}

}  // namespace

void Qt_windows::add_builder(Form& form, std::function<std::unique_ptr<QWidget>()> make) {
    entries_.push_back({&form, std::move(make), nullptr});
}

Qt_windows::Entry* Qt_windows::entry_of(const Form& form) {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const Entry& entry) { return entry.form == &form; });
    return found == entries_.end() ? nullptr : &*found;
}

void Qt_windows::build(Entry& entry) {
    entry.window = entry.make();
    QWidget& window = *entry.window;
    window.setObjectName(to_screen(entry.form->name()));
    window.setWindowTitle(title_of(*entry.form));
    QWidget* owner = main_window();
    if (owner != nullptr && owner != &window) {
        window.setParent(owner, window.windowFlags());
    }
    places_.place(window);
    Event_filter::install(window, [&form = *entry.form, &window](QEvent& event) {
        return close_by_form(form, window, event);
    });
}

QWidget* Qt_windows::window_of(const Form& form) {
    Entry* entry = entry_of(form);
    if (entry != nullptr && !entry->window) {
        build(*entry);
    }
    return entry == nullptr ? nullptr : entry->window.get();
}

QWidget* Qt_windows::main_window() const {
    return entries_.empty() ? nullptr : entries_.front().window.get();
}

QWidget* Qt_windows::active_window() const {
    if (QWidget* modal = modality_.top()) {
        return modal;
    }
    if (QWidget* active = QApplication::activeWindow(); active != nullptr && active->isVisible()) {
        return active;
    }
    QWidget* owner = main_window();
    return owner != nullptr && owner->isVisible() ? owner : nullptr;
}

void Qt_windows::show(Form& form, bool modal) {
    QWidget* window = window_of(form);
    if (window == nullptr) {
        return;
    }
    if (modal) {
        modality_.begin(*window);
    }
    if (!window->isVisible()) {
        focus_first(*window);
    }
    window->show();
    window->raise();
    window->activateWindow();
}

void Qt_windows::hide(Form& form) {
    Entry* entry = entry_of(form);
    if (entry != nullptr && entry->window) {
        if (entry->window->isVisible()) {
            places_.remember(*entry->window);
        }
        entry->window->hide();
    }
}

Task<> Qt_windows::wait_while_visible(const Form& form) {
    while (form.visible() && !ended_) {
        co_await loop_.next();
    }
}

class Qt_windows::Usual_pointer {
  public:
    explicit Usual_pointer(Qt_windows& windows) : windows_(windows) {
        ++windows_.dialogs_;
        windows_.show_pointer();
    }
    Usual_pointer(const Usual_pointer&) = delete;
    Usual_pointer& operator=(const Usual_pointer&) = delete;
    ~Usual_pointer() {
        --windows_.dialogs_;
        windows_.show_pointer();
    }

  private:
    Qt_windows& windows_;
};

Task<bool> Qt_windows::run(QDialog& dialog) {
    const QPointer<QDialog> shown(&dialog);
    const Usual_pointer usual_pointer(*this);
    modality_.begin(dialog);
    dialog.show();
    while (shown && shown->isVisible() && !ended_) {
        co_await loop_.next();
    }
    co_return shown && shown->result() == QDialog::Accepted;
}

Task<bool> Qt_windows::run_in_place(QDialog& dialog) {
    const QPointer<QDialog> shown(&dialog);
    places_.place(dialog);
    const bool accepted = co_await run(dialog);
    if (shown) {
        places_.remember(*shown);
    }
    co_return accepted;
}

void Qt_windows::repaint(Form& form) {
    Entry* entry = entry_of(form);
    if (entry != nullptr && entry->window) {
        entry->window->setWindowTitle(title_of(form));
        entry->window->repaint();
    }
}

void Qt_windows::set_hourglass(bool on) {
    hourglass_wanted_ = on;
    show_pointer();
}

void Qt_windows::show_pointer() {
    const bool on = hourglass_wanted_ && dialogs_ == 0;
    if (on == std::exchange(hourglass_, on)) {
        return;
    }
    if (on) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

void Qt_windows::end_program(int exit_status) {
    ended_ = true;
    // Not quit(), which asks the windows first: they are closed already, or refuse.
    exit_status_ = exit_status;
    QCoreApplication::exit(exit_status);
}

void Qt_windows::clear() {
    // The main window goes last: it owns the others.
    while (!entries_.empty()) {
        entries_.pop_back();
    }
}

}  // namespace kelvane
