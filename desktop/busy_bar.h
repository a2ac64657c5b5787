#pragma once

#include <QBasicTimer>
#include <QProgressBar>

namespace kelvane {

/// A progress bar that, with the range 0 to 0, shows work of unknown length by a block that goes
/// on one step a second. What a style draws there is redrawn 60 times a second: a program
/// that waits for a machine all day would be woken for each.
class Busy_bar : public QProgressBar {
  public:
    explicit Busy_bar(QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    [[nodiscard]] bool is_busy() const { return minimum() == maximum(); }
    [[nodiscard]] QRect block() const;

    QBasicTimer pace_;
    int step_ = 0;
};

}  // namespace kelvane
