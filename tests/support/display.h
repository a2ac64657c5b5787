#pragma once

#include <string>
#include <vector>

#include "support/program_process.h"

namespace kelvane::testing {

/// A dialog that may stand open beside a transfer: its menu's letter, its item from 0, its title
/// with the machine of a `Program_directory` selected.
struct Menu_dialog {
    const char* menu;
    int item;
    const char* title;
};
inline constexpr Menu_dialog menu_dialogs[] = {
    {"f", 0, "Send to Mill"},
    {"c", 0, "Configure serial port"},
    {"c", 1, "Select I/O device"},
    {"c", 2, "Select printer"},
    {"c", 3, "Page layout"},
    {"c", 4, "Files and directories"},
    {"a", 1, "Connecting a machine for the first time"},
};

/// A screen that nobody sees (Xvfb), for the finished program in its real windows, with keys and a
/// mouse from outside (xdotool). No window manager runs on it: the main window stands in the
/// corner, and nobody but `type` gives a window the focus.
class Display {
  public:
    /// `folder` takes the server's messages.
    explicit Display(const Program_directory& folder);

    /// For the program that shall use it. Waits until the server answers; throws when it does not
    /// `in_time`.
    [[nodiscard]] std::vector<std::string> environment() const;
    /// True when a window of just that title is there now.
    [[nodiscard]] bool is_shown(const std::string& title) const;
    /// Likewise, but waits for it `in_time`.
    [[nodiscard]] bool shows(const std::string& title) const;
    [[nodiscard]] bool closes(const std::string& title) const;
    /// Keys as xdotool names them, with blanks between; false when there is no such window.
    bool type(const std::string& title, const std::string& keys) const;
    /// The n-th item of a menu of the main window, from 0.
    bool pick(const std::string& menu_letter, int item) const;
    /// Puts a window beside the main one, of which it would cover more where fonts are large.
    [[nodiscard]] bool put_aside(const std::string& title) const;
    /// The mouse, in pixels of the screen.
    bool click(int x, int y) const;

  private:
    [[nodiscard]] std::string name() const;
    [[nodiscard]] bool desk(const std::string& command) const;
    [[nodiscard]] bool with(const std::string& title, const std::string& command) const;

    const Program_directory& folder_;
    Process server_;
};

}  // namespace kelvane::testing
