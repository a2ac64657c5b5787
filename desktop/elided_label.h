#pragma once

#include <QLabel>

namespace kelvane {

/// A line of text that never widens its window: what has no room is cut off, and the whole is its
/// tool tip.
class Elided_label : public QLabel {
  public:
    /// It takes the room that is given to it.
    Elided_label();
    /// It takes the room of its text, up to `characters` digits; what is cut off stands in the
    /// middle.
    explicit Elided_label(int characters);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    [[nodiscard]] QString elided() const;

    int characters_ = 0;  ///< 0: no limit of its own
};

}  // namespace kelvane
