#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>

#include "frame/main_window.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace kelvane {

class Edit_commands;
class Find_bar;
class Pane_view;
class Program_pane;
class State_banner;

/// What the main window shows of the program in the pane.
struct Editor_parts {
    Program_pane& pane;
    Find_bar& find_bar;
    Edit_commands& commands;
};

/// The main window: menus, the tool bar, the state of the transfer, the editor, the row of progress
/// bar, Send and Stop under it, and the status bar.
class Main_window : public QMainWindow {
  public:
    /// `form` and what `parts` names outlive the window. What is seen and enabled follows them; the
    /// close button is `form.close()`.
    Main_window(Kelvane_lite_form& form, Editor_parts parts);

  protected:
    bool event(QEvent* event) override;

  private:
    void make_menus(Kelvane_lite_form& form);
    void make_tool_bar(Kelvane_lite_form& form, Editor_parts& parts);
    void make_first_steps(Kelvane_lite_form& form, const Program_pane& pane);
    void make_shortcuts(Kelvane_lite_form& form);
    void make_controls(Kelvane_lite_form& form, Editor_parts& parts);
    void make_status_bar(Kelvane_lite_form& form, Editor_parts parts);
    void place_controls();

    QWidget* inner_;
    State_banner* banner_;
    QLabel* first_steps_ = nullptr;
    std::function<void()> show_first_steps_;
    Pane_view* view_ = nullptr;
    QWidget* find_bars_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QPushButton* send_ = nullptr;
    QPushButton* stop_ = nullptr;
};

/// The window of `form`, not yet shown.
std::unique_ptr<Main_window> make_main_window(Kelvane_lite_form& form, Editor_parts parts);

}  // namespace kelvane
