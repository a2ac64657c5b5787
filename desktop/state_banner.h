#pragma once

#include <QWidget>

#include "desktop/paced_refresh.h"
#include "platform/controls.h"

namespace kelvane {

/// What goes on, in a field of its own colour with a picture and large letters; hidden until
/// something has gone on. Assistive programs are told when the words change.
class State_banner : public QWidget {
  public:
    explicit State_banner(State_field& field);
    ~State_banner() override { field_.observe({}); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] const State_field& field() const { return field_; }
    /// Painting that the last change has caused.
    void add_cost(qint64 nanoseconds) { pace_.add_cost(nanoseconds); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void refresh();
    void announce();
    [[nodiscard]] QFont large_font() const;
    [[nodiscard]] int advice_lines() const;

    State_field& field_;
    State_field::View shown_;
    Paced_refresh pace_;
};

}  // namespace kelvane
