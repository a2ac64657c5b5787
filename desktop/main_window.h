#pragma once

#include <QMainWindow>
#include <memory>

#include "frame/main_window.h"

class QProgressBar;
class QPushButton;

namespace kelvane {

class Program_view;

/// The main window: menus, the editor, the row of progress bar, Send and Stop under it, and the
/// status bar.
class Main_window : public QMainWindow {
  public:
    explicit Main_window(Kelvane_lite_form& form);

  protected:
    bool event(QEvent* event) override;

  private:
    void make_menus(Kelvane_lite_form& form);
    void make_controls(Kelvane_lite_form& form);
    void make_status_bar(Kelvane_lite_form& form);
    void place_controls();

    QWidget* inner_;
    Program_view* view_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QPushButton* send_ = nullptr;
    QPushButton* stop_ = nullptr;
};

std::unique_ptr<Main_window> make_main_window(Kelvane_lite_form& form);

}  // namespace kelvane
