#include "line/line_view.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr int refresh_ms = 100;
/// As much is shown in one go: more than any line carries meanwhile, and painted in some ms.
constexpr std::size_t most_bytes = 8UL * 1024;
constexpr std::size_t most_stretches = 1000;

}  // namespace

Line_view::Line_view(const Platform& platform, Line_watch& watch)
    : loop_(platform.loop),
      desktop_(platform.desktop),
      watch_(watch),
      refresh_(platform.loop, refresh_ms) {
    Form_lst.set_items({"Characters", "Characters without bit 7", "Hex"});
    Form_lst.select(0);
    Form_lst.on_mouse_down = [this] { show_all_again(); };
    crossed_label.plain = true;
    refresh_.on_tick = [this] { show_new(); };
}

void Line_view::open() {
    if (!std::exchange(open_, true)) {
        held_ = false;
        clear();
        watch_.add(*this);
    }
}

void Line_view::close() {
    if (std::exchange(open_, false)) {
        watch_.remove(*this);
        refresh_.set_enabled(false);
        log_.clear();
        Crossed_txt.clear();
    }
}

void Line_view::clear() {
    log_.clear();
    start_ = loop_.now();
    log_label.set_caption("&Seconds since " + desktop_.date_text() + " " + desktop_.time_text() +
                          ", > to the machine, < from it");
    to_machine_ = 0;
    from_machine_ = 0;
    show_all_again();
}

void Line_view::hold(bool held) {
    held_ = held;
    refresh_.set_enabled(open_ && !held);
}

std::string Line_view::text() const {
    return log_label.caption().substr(1) + "\n" + log_text(log_, start_, form());
}

void Line_view::crossed(Line_direction direction, std::string_view bytes) {
    log_.add(loop_.now(), direction, bytes);
    (direction == Line_direction::to_machine ? to_machine_ : from_machine_) += bytes.size();
    if (!held_ && !refresh_.enabled()) {
        refresh_.set_enabled(true);
    }
}

void Line_view::show_new() {
    drop_old();
    show_growth();
    show_next();
    show_counts();
    refresh_.set_enabled(next_ < end());
}

/// What has fallen out of the log.
void Line_view::drop_old() {
    const std::uint64_t first = log_.position_of_first();
    Crossed_txt.drop_first(std::min(first, next_) - std::min(first_, next_));
    first_ = std::max(first_, first);
    next_ = std::max(next_, first);
}

/// Only the last stretch that has been shown can have grown since.
void Line_view::show_growth() {
    if (next_ == first_ || stretch(next_ - 1).bytes.size() == shown_bytes_) {
        return;
    }
    shown_bytes_ = stretch(next_ - 1).bytes.size();
    Crossed_txt.replace_last(stretch_text(stretch(next_ - 1), start_, form()));
}

void Line_view::show_next() {
    std::vector<Log_text::Part> parts;
    for (std::size_t bytes = 0;
         next_ < end() && bytes < most_bytes && parts.size() < most_stretches; ++next_) {
        const Line_log::Stretch& next = stretch(next_);
        parts.push_back({stretch_text(next, start_, form()),
                         next.direction == Line_direction::to_machine ? Log_text::Side::outgoing
                                                                      : Log_text::Side::incoming});
        shown_bytes_ = next.bytes.size();
        bytes += next.bytes.size();
    }
    Crossed_txt.add(std::move(parts));
}

void Line_view::show_counts() {
    crossed_label.set_caption("> to the machine: " + grouped_decimal(to_machine_) +
                              "    < from the machine: " + grouped_decimal(from_machine_));
}

void Line_view::show_all_again() {
    Crossed_txt.clear();
    first_ = log_.position_of_first();
    next_ = first_;
    show_new();
}

Line_form Line_view::form() const {
    return static_cast<Line_form>(std::max(Form_lst.selected(), 0));
}

const Line_log::Stretch& Line_view::stretch(std::uint64_t position) const {
    return log_.stretches()[position - log_.position_of_first()];
}

std::uint64_t Line_view::end() const {
    return log_.position_of_first() + log_.stretches().size();
}

}  // namespace kelvane
