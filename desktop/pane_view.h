#pragma once

#include <QAbstractScrollArea>
#include <QTimer>
#include <functional>
#include <string>

#include "desktop/paced_refresh.h"
#include "desktop/pane_painter.h"
#include "editing/program_pane.h"

namespace kelvane {

/// The editor pane on the screen. It holds no text: what is seen is painted from the bytes, so a
/// program of any size is there at once and stays byte for byte what it is. Changes of the log,
/// which come with every block of a transfer, are shown at the pace of a `Paced_refresh`: a line
/// must not wait.
class Pane_view : public QAbstractScrollArea {
  public:
    explicit Pane_view(Program_pane& pane);
    ~Pane_view() override;

    [[nodiscard]] Program_pane& pane() { return pane_; }
    /// True while a change waits to be shown.
    [[nodiscard]] bool refresh_is_pending() const { return pace_.pending(); }
    /// What it has cost to paint the window with the change shown last, in nanoseconds.
    void add_cost(qint64 nanoseconds) { pace_.add_cost(nanoseconds); }
    /// Lines that fit into the pane.
    [[nodiscard]] std::size_t page() const;
    /// Where a byte's character stands in the viewport; it may be outside of what is seen.
    [[nodiscard]] QRect place_of(std::size_t offset) const;
    /// The character at a point of the viewport, or the nearest.
    [[nodiscard]] std::size_t offset_at(QPoint point) const;
    /// Scrolls until a byte's character is seen.
    void bring_into_view(std::size_t offset);

    /// A file has been dropped onto the pane.
    std::function<void(std::string path)> on_drop;
    /// Called when `Program_pane::note` may say something else.
    std::function<void()> on_shown;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    /// What has been shown last.
    struct Shown {
        std::uint64_t revision = 0;
        Program_pane::Content content = Program_pane::Content::program;
        int zoom = 0;
        std::size_t caret = 0, anchor = 0;
        std::optional<Program_pane::Band> band;
        int top = 0;
    };

    void connect_scroll_bars();
    void pane_changed();
    void refresh();
    void find_more_lines();
    void use_zoom();
    void change_content();
    void set_ranges();
    void scroll_to_news();
    void show_lines(std::size_t offset, std::size_t length);
    void update_band(const std::optional<Program_pane::Band>& band);
    [[nodiscard]] bool only_band_moved(const Shown& before) const;
    [[nodiscard]] Pane_layout layout() const;
    [[nodiscard]] int seen_columns() const;
    [[nodiscard]] bool edit_by_key(const QKeyEvent& event);
    [[nodiscard]] bool step_by_key(QKeyEvent& event);
    void tell_assistive_programs() const;

    Program_pane& pane_;
    QFont usual_font_;
    Shown shown_;
    int other_top_ = 0;  ///< of the content not shown
    int longest_ = 0;    ///< columns of the longest line seen so far
    qreal column_width_ = 1;
    bool fixed_pitch_ = true;
    QTimer slices_;  ///< runs while lines of a long log are still to be found
    QElapsedTimer since_double_click_;
    Paced_refresh pace_;
};

}  // namespace kelvane
