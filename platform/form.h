#pragma once

#include <string>

#include "platform/task.h"

namespace kelvane {

class Form;

/// Shows and hides the windows of forms.
class Window_system {
  public:
    virtual ~Window_system() = default;
    /// Shows the form's window, or brings it to the front. While a `modal` window is shown the
    /// program's other windows take no input, except the main window's Send and Stop and its close
    /// button; the call returns at once all the same.
    virtual void show(Form& form, bool modal) = 0;
    virtual void hide(Form& form) = 0;
    /// Waits until the form is no longer visible.
    virtual Task<> wait_while_visible(const Form& form) = 0;
    /// Repaints what the form shows now, without waiting for the next yield.
    virtual void repaint(Form& form) = 0;
    /// The hourglass pointer over all windows, or the usual one.
    virtual void set_hourglass(bool on) = 0;
    /// Called when the main window has been unloaded: the program ends as soon as the routines that
    /// are running have returned, with that exit status.
    virtual void end_program(int exit_status) = 0;
};

/// A window's life: loaded (its controls are set to their start values), shown, hidden, unloaded.
/// The controls are members of the derived forms and live as long as the form object.
class Form {
  public:
    /// `name` is the form's name in the program, also the window's object name.
    Form(Window_system& windows, std::string name, std::string caption);
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    virtual ~Form() = default;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void set_caption(std::string caption);
    [[nodiscard]] bool loaded() const { return loaded_; }
    [[nodiscard]] bool visible() const { return visible_; }

    /// Loads the form when it is not loaded; it stays hidden.
    void load();
    /// Loads the form if need be and shows it without waiting.
    void show();
    /// As `show`, with a modal window, and waits until it is hidden or unloaded, by anybody. A wait
    /// that is given up hides it.
    Task<> show_modal();
    /// Hides the window; the values stay.
    void hide();
    /// Hides and unloads; nothing happens when the form is not loaded.
    void unload();
    /// The operator closes the window (close button, Escape): unloads unless the form has another
    /// view of it.
    virtual void close() { unload(); }

  protected:
    virtual void on_load() {}
    virtual void on_unload() {}
    [[nodiscard]] Window_system& windows() const { return windows_; }

  private:
    Window_system& windows_;
    std::string name_;
    std::string caption_;
    bool loaded_ = false;
    bool visible_ = false;
};

}  // namespace kelvane
