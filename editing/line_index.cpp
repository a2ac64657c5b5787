#include "editing/line_index.h"

#include <algorithm>

namespace kelvane {

namespace {

constexpr std::size_t spacing = 4096;  ///< bytes between two marks

}  // namespace

/// Moves `mark` over one byte.
void Line_index::pass(std::string_view text, Mark& mark) const {
    const char next = mark.offset + 1 < text.size() ? text[mark.offset + 1] : '\0';
    mark.lines += ends_line(text, mark.offset) ? 1 : 0;
    mark.units += units_of(text[mark.offset], next, encoding_);
    ++mark.offset;
}

Line_index::Mark Line_index::counted_to(std::string_view text, Mark from,
                                        std::size_t offset) const {
    while (from.offset < offset) {
        pass(text, from);
    }
    return from;
}

/// Counts from `from` to `end`, leaving marks on the way.
void Line_index::mark_stretch(std::string_view text, Mark& from, std::size_t end,
                              std::vector<Mark>& to) {
    while (end - from.offset >= 2 * spacing) {
        from = counted_to(text, from, from.offset + spacing);
        to.push_back(from);
    }
    from = counted_to(text, from, end);
}

bool Line_index::extend(std::string_view text, std::size_t budget) {
    const std::size_t end = end_.offset + std::min(budget, text.size() - end_.offset);
    Mark mark = marks_.back();
    // What has been counted behind the last mark is counted once more: less than two spacings.
    mark_stretch(text, mark, end, marks_);
    end_ = mark;
    return end == text.size();
}

void Line_index::edited(std::string_view text, std::size_t at, std::size_t removed,
                        std::size_t added) {
    const auto behind =
        std::upper_bound(marks_.begin() + 1, marks_.end(), at + removed,
                         [](std::size_t offset, const Mark& mark) { return offset < mark.offset; });
    // A line end at the byte before the edit is seen in the byte behind it, so a mark at `at` goes.
    const auto before =
        std::lower_bound(marks_.begin() + 1, marks_.end(), at,
                         [](const Mark& mark, std::size_t offset) { return mark.offset < offset; });
    std::vector<Mark> later(behind, marks_.end());
    later.push_back(end_);
    marks_.erase(before, marks_.end());

    Mark fresh = marks_.back();
    const Mark old = later.front();
    mark_stretch(text, fresh, old.offset - removed + added, marks_);
    for (Mark& mark : later) {
        mark.offset = mark.offset - old.offset + fresh.offset;
        mark.lines = mark.lines - old.lines + fresh.lines;
        mark.units = mark.units - old.units + fresh.units;
    }
    end_ = later.back();
    later.pop_back();
    marks_.insert(marks_.end(), later.begin(), later.end());
}

/// The last mark whose `measure` is below `value`, or the first mark.
Line_index::Mark Line_index::mark_before(std::size_t value, std::size_t Mark::*measure) const {
    const auto found = std::lower_bound(
        marks_.begin() + 1, marks_.end(), value,
        [measure](const Mark& mark, std::size_t wanted) { return mark.*measure < wanted; });
    return *(found - 1);
}

std::size_t Line_index::line_start(std::string_view text, std::size_t line) const {
    Mark mark = mark_before(line, &Mark::lines);
    while (mark.lines < line && mark.offset < end_.offset) {
        pass(text, mark);
    }
    return mark.offset;
}

std::size_t Line_index::line_at(std::string_view text, std::size_t offset) const {
    const std::size_t within = std::min(offset, end_.offset);
    return counted_to(text, mark_before(within, &Mark::offset), within).lines;
}

std::size_t Line_index::unit_at(std::string_view text, std::size_t offset) const {
    const std::size_t within = std::min(offset, end_.offset);
    return counted_to(text, mark_before(within, &Mark::offset), within).units;
}

std::size_t Line_index::offset_of_unit(std::string_view text, std::size_t unit) const {
    Mark mark = mark_before(unit, &Mark::units);
    while (mark.units < unit && mark.offset < end_.offset) {
        pass(text, mark);
    }
    while (encoding_ == Text_encoding::utf8 && mark.units > 0 && mark.offset < end_.offset &&
           is_continuation(text[mark.offset])) {
        ++mark.offset;
    }
    return mark.offset;
}

}  // namespace kelvane
