#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

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

    void show(Form& form, bool modal) override;
    void hide(Form& form) override;
    void wait_while_visible(const Form& form) override;
    void repaint(Form& form) override;
    void set_hourglass(bool on) override;
    void end_program() override;

    /// True after `end_program`, also when that came before the application's loop was entered.
    [[nodiscard]] bool ended() const { return ended_; }
    /// The form's window, built if need be; null for a form that has none.
    QWidget* window_of(const Form& form);
    /// The window that a message or a system dialog stands before; null when none is shown.
    [[nodiscard]] QWidget* active_window() const;
    [[nodiscard]] bool hourglass() const { return hourglass_; }
    /// Ends all windows, so that the forms may end.
    void clear();

  private:
    struct Entry {
        Form* form;
        std::function<std::unique_ptr<QWidget>()> make;
        std::unique_ptr<QWidget> window;
    };
    Entry* entry_of(const Form& form);
    [[nodiscard]] QWidget* main_window() const;
    void build(Entry& entry);

    Event_loop& loop_;
    std::vector<Entry> entries_;
    bool hourglass_ = false;
    bool ended_ = false;
};

/// Shows the usual pointer, in place of an hourglass, as long as it lives: for dialogs that a
/// working routine shows.
class Usual_pointer {
  public:
    explicit Usual_pointer(Qt_windows& windows) : windows_(windows), was_(windows.hourglass()) {
        windows_.set_hourglass(false);
    }
    Usual_pointer(const Usual_pointer&) = delete;
    Usual_pointer& operator=(const Usual_pointer&) = delete;
    ~Usual_pointer() { windows_.set_hourglass(was_); }

  private:
    Qt_windows& windows_;
    bool was_;
};

}  // namespace kelvane
