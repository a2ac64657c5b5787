#pragma once

#include <QLabel>

namespace kelvane {

/// A line of text that never widens its window: what has no room is cut off, and the whole is its
/// tool tip.
class Elided_label : public QLabel {
  public:
    Elided_label();

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    [[nodiscard]] QString elided() const;
};

}  // namespace kelvane
