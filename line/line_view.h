#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "line/line_watch.h"
#include "platform/controls.h"
#include "platform/event_loop.h"
#include "platform/platform.h"
#include "session/line_log.h"

namespace kelvane {

/// A view of what crosses the line, for a window to show: both directions apart, with times, the
/// last 256 kB. It costs nothing unless it is open, and nothing while nothing crosses. What is new
/// is shown ten times a second at most, and a bounded part of it each time, because the line waits
/// while a window is painted.
class Line_view : private Line_watch::Listener {
  public:
    Line_view(const Platform& platform, Line_watch& watch);
    Line_view(const Line_view&) = delete;
    Line_view& operator=(const Line_view&) = delete;
    ~Line_view() override { close(); }

    Log_text Crossed_txt{"Crossed_txt"};
    Label log_label{"log_label"};  ///< of the view: since when seconds count
    List_box Form_lst{"Form_lst", "Sho&w as:"};
    /// How many characters have crossed each way since it was opened or cleared.
    Label crossed_label{"crossed_label"};

    /// Begins to look, empty, with the times counted from now. Nothing happens while it is open.
    void open();
    void close();
    void clear();
    /// While held, what is shown stays as it is; what crosses is kept all the same.
    void hold(bool held);
    [[nodiscard]] bool held() const { return held_; }
    /// Characters that have come in since it was opened or cleared.
    [[nodiscard]] std::size_t from_machine() const { return from_machine_; }
    /// All that is kept, as the lines of a text file, of which the first says what the rest is.
    [[nodiscard]] std::string text() const;

  private:
    void crossed(Line_direction direction, std::string_view bytes) override;
    void show_new();
    void drop_old();
    void show_growth();
    void show_next();
    void show_counts();
    void show_all_again();
    [[nodiscard]] Line_form form() const;
    [[nodiscard]] const Line_log::Stretch& stretch(std::uint64_t position) const;
    [[nodiscard]] std::uint64_t end() const;

    Event_loop& loop_;
    const Desktop_services& desktop_;
    Line_watch& watch_;
    Timer refresh_;  ///< runs only while something is still to be shown
    Line_log log_;
    Clock_time start_{};
    std::uint64_t first_ = 0;      ///< position in the log of the first stretch that is shown
    std::uint64_t next_ = 0;       ///< of the first that is not shown yet
    std::size_t shown_bytes_ = 0;  ///< of the stretch before that one
    std::uint64_t to_machine_ = 0;
    std::uint64_t from_machine_ = 0;
    bool open_ = false;
    bool held_ = false;
};

}  // namespace kelvane
