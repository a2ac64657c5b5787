#pragma once

#include <QDialog>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "desktop/modality.h"
#include "desktop/window_places.h"
#include "platform/event_loop.h"
#include "platform/form.h"

namespace kelvane {

/// The windows of the forms. Each is built when its form is first shown and then kept; closing it,
/// by its close button or Escape, is left to the form's `close()`.
class Qt_windows : public Window_system {
  public:
    explicit Qt_windows(Event_loop& loop) : loop_(loop) {}
    Qt_windows(const Qt_windows&) = delete;
    Qt_windows& operator=(const Qt_windows&) = delete;
    ~Qt_windows() override { clear(); }

    /// Says how the window of `form` is built. The form must live until `clear`. A form that has no
    /// window (the port's) need not be added. The first one added is the main window, which the
    /// others stand before.
    template <typename Form_type, typename Window>
    void add(Form_type& form, std::unique_ptr<Window> (*make)(Form_type&)) {
        add_builder(form, [&form, make]() -> std::unique_ptr<QWidget> { return make(form); });
    }
    void add_builder(Form& form, std::function<std::unique_ptr<QWidget>()> make);

    /// Windows open where they were when they were last closed, from run to run.
    void remember_places(Files& files) { places_.use(files); }

    void show(Form& form, bool modal) override;
    void hide(Form& form) override;
    Task<> wait_while_visible(const Form& form) override;
    void repaint(Form& form) override;
    void set_hourglass(bool on) override;
    void end_program(int exit_status) override;

    /// True after `end_program`, also when that came before the application's loop was entered.
    [[nodiscard]] bool ended() const { return ended_; }
    [[nodiscard]] int exit_status() const { return exit_status_; }
    /// The form's window, built if need be; null for a form that has none.
    QWidget* window_of(const Form& form);
    /// The window that a message or a system dialog stands before; null when none is shown.
    [[nodiscard]] QWidget* active_window() const;
    /// The modal window that takes the input; null when none is shown.
    [[nodiscard]] const QWidget* modal_window() const { return modality_.top(); }
    /// Shows a dialog of Qt's, modal and with the usual pointer, and waits until it is closed, by
    /// anybody. True when it has been accepted.
    Task<bool> run(QDialog& dialog);
    /// Likewise, where and as large as a dialog of its name was last.
    Task<bool> run_in_place(QDialog& dialog);
    /// Ends all windows, so that the forms may end.
    void clear();

  private:
    class Usual_pointer;
    struct Entry {
        Form* form;
        std::function<std::unique_ptr<QWidget>()> make;
        std::unique_ptr<QWidget> window;
    };
    Entry* entry_of(const Form& form);
    [[nodiscard]] QWidget* main_window() const;
    void build(Entry& entry);
    void show_pointer();

    Event_loop& loop_;
    Modality modality_;
    std::vector<Entry> entries_;
    Window_places places_;
    bool hourglass_wanted_ = false;
    int dialogs_ = 0;  ///< of Qt's, shown now: they have the usual pointer
    bool hourglass_ = false;
    bool ended_ = false;
    int exit_status_ = 0;
};

/// A dialog of Qt's for one showing. It may end before its owner, with the window that it stands
/// before; and it ends after its owner when its own code is still on the call stack then.
template <typename Dialog>
class Dialog_owner {
  public:
    template <typename... Arguments>
    explicit Dialog_owner(const char* name, Arguments&&... arguments)
        : dialog_(new Dialog(std::forward<Arguments>(arguments)...)) {
        dialog_->setObjectName(name);
    }
    Dialog_owner(const Dialog_owner&) = delete;
    Dialog_owner& operator=(const Dialog_owner&) = delete;
    ~Dialog_owner() {
        if (dialog_) {
            dialog_->hide();
            dialog_->deleteLater();
        }
    }
    Dialog* operator->() const { return dialog_.data(); }
    Dialog& operator*() const { return *dialog_; }
    /// False when it has ended with its window.
    [[nodiscard]] bool there() const { return !dialog_.isNull(); }

  private:
    QPointer<Dialog> dialog_;
};

}  // namespace kelvane
