#include "editing/line_index.h"

#include <algorithm>

#include "platform/lines.h"

namespace kelvane {

namespace {

constexpr std::size_t spacing = 4096;  ///< bytes between two marks
/// A line end is recognised in its first so many bytes.
constexpr std::size_t longest_line_end = 3;

}  // namespace

/// `mark` moved over one character, or what else a byte stands for, or one line end.
Line_index::Mark Line_index::behind(std::string_view text, Mark mark) const {
    const char byte = text[mark.offset];
    if (byte == '\n' || byte == '\r') {
        return {mark.offset + line_end_length(text, mark.offset), mark.lines + 1, mark.units + 1};
    }
    return {mark.offset + 1, mark.lines, mark.units + units_of(byte, encoding_)};
}

/// What stands before `offset`; of a line end around it, what stands before that.
Line_index::Mark Line_index::counted_to(std::string_view text, std::size_t offset) const {
    Mark mark = mark_before(offset + 1, &Mark::offset);
    while (mark.offset < offset) {
        const Mark next = behind(text, mark);
        if (next.offset > offset) {
            break;
        }
        mark = next;
    }
    return mark;
}

void Line_index::add_mark(const Mark& mark) {
    if (mark.offset - marks_.back().offset >= spacing) {
        marks_.push_back(mark);
    }
}

bool Line_index::extend(std::string_view text, std::size_t budget) {
    const std::size_t stop = end_.offset + std::min(budget, text.size() - end_.offset);
    while (end_.offset < stop) {
        end_ = behind(text, end_);
        add_mark(end_);
    }
    return end_.offset == text.size();
}

void Line_index::edited(std::string_view text, std::size_t at, std::size_t removed,
                        std::size_t added) {
    const auto below = [](const Mark& mark, std::size_t offset) { return mark.offset < offset; };
    // Marks too near before the edit may now stand within a line end.
    const std::size_t safe = at >= longest_line_end - 1 ? at - (longest_line_end - 2) : 0;
    const auto first = std::lower_bound(marks_.begin() + 1, marks_.end(), safe, below);
    const auto rest = std::lower_bound(first, marks_.end(), at + removed, below);
    std::vector<Mark> later(rest, marks_.end());
    later.push_back(end_);
    marks_.erase(first, marks_.end());

    // Behind the edit all is as it was, from the first mark on that again begins a character.
    Mark fresh = marks_.back();
    auto old = later.begin();
    const auto moved = [&](const Mark& mark) { return mark.offset - removed + added; };
    while (fresh.offset != moved(*old)) {
        if (fresh.offset > moved(*old)) {
            ++old;
            continue;
        }
        fresh = behind(text, fresh);
        add_mark(fresh);
    }
    const Mark same = *old;
    for (; old != later.end(); ++old) {
        end_ = {moved(*old), old->lines - same.lines + fresh.lines,
                old->units - same.units + fresh.units};
        add_mark(end_);
    }
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
        mark = behind(text, mark);
    }
    return mark.offset;
}

std::size_t Line_index::line_at(std::string_view text, std::size_t offset) const {
    return counted_to(text, std::min(offset, end_.offset)).lines;
}

std::size_t Line_index::unit_at(std::string_view text, std::size_t offset) const {
    return counted_to(text, std::min(offset, end_.offset)).units;
}

std::size_t Line_index::offset_of_unit(std::string_view text, std::size_t unit) const {
    Mark mark = mark_before(unit, &Mark::units);
    while (mark.units < unit && mark.offset < end_.offset) {
        mark = behind(text, mark);
    }
    while (encoding_ == Text_encoding::utf8 && mark.units > 0 && mark.offset < end_.offset &&
           is_continuation(text[mark.offset])) {
        ++mark.offset;
    }
    return mark.offset;
}

}  // namespace kelvane
