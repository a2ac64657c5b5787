#pragma once

#include <QPlainTextEdit>
#include <cstddef>
#include <cstdint>
#include <deque>

#include "desktop/paced_refresh.h"
#include "platform/controls.h"

namespace kelvane {

/// Shows a log: only what is new is put into the widget, at the pace of a `Paced_refresh`, because
/// a line that is being sent on waits meanwhile. It stays at the end of the log unless the operator
/// has scrolled away from there; what is selected stays selected.
class Log_view : public QPlainTextEdit {
  public:
    explicit Log_view(Log_text& log);
    ~Log_view() override;

    /// Columns and rows that are seen at least.
    void set_least_size(int columns, int rows);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    /// What is taken off the start.
    struct Fallen {
        int lines = 0;
        int characters = 0;
    };
    void refresh();
    void show_changes();
    void drop_fallen();
    void refresh_last();
    void append(const Log_text::Part& part);
    void select(int anchor, int position);
    void write(QTextCursor& cursor, const Log_text::Part& part);
    [[nodiscard]] QTextCursor before_block(int number) const;
    [[nodiscard]] QColor colour_of(Log_text::Side side) const;
    void copy_selected_or_all();

    Log_text& log_;
    std::uint64_t first_ = 0;      ///< position of the first part that is shown
    std::deque<int> lines_;        ///< of each part that is shown
    Fallen dropped_;               ///< by the refresh that runs
    bool refreshes_ = false;       ///< one runs
    bool follows_ = true;          ///< the end of the log is in sight
    std::size_t last_length_ = 0;  ///< of the last one, in bytes
    Paced_refresh pace_;
};

}  // namespace kelvane
