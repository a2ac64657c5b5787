#pragma once

#include <QPlainTextEdit>
#include <functional>

#include "desktop/paced_refresh.h"
#include "desktop/qt_text.h"
#include "desktop/text_map.h"
#include "platform/controls.h"

namespace kelvane {

/// The editor pane: shows a program or a message and the part of it that is being sent. It is for
/// reading; programs are sent and saved from files. Changes are shown at the pace of a
/// `Paced_refresh`: a line must not wait. Of a very large text only the part around the selection
/// is in the widget, which would take seconds for the whole.
class Program_view : public QPlainTextEdit {
  public:
    explicit Program_view(Rich_text& text);
    ~Program_view() override;

    /// "" when all of the text is shown, else which part.
    [[nodiscard]] QString part_text() const;
    /// True while a change waits to be shown.
    [[nodiscard]] bool refresh_is_pending() const { return pace_.pending(); }
    /// What it has cost to paint the window with the change shown last, in nanoseconds.
    void add_cost(qint64 nanoseconds) { pace_.add_cost(nanoseconds); }
    /// Called when `part_text` may have changed.
    std::function<void()> on_part_changed;

  private:
    void refresh();
    void show_lines_around(std::size_t offset);
    void show_selection();
    [[nodiscard]] int position_of(std::size_t offset) const;
    [[nodiscard]] QString screen_line(std::size_t line) const;

    Rich_text& text_;
    Text_map map_;
    unsigned shown_revision_;
    Text_form form_ = Text_form::latin1;
    std::size_t first_line_ = 0;  ///< in the widget
    std::size_t end_line_ = 0;    ///< the first one that is not any more
    Paced_refresh pace_;
};

}  // namespace kelvane
