#include "editing/caret.h"

#include <algorithm>

#include "editing/block_words.h"

namespace kelvane {

namespace {

struct Stretch {
    std::size_t from, to;
};

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

/// The word of a block that covers `at`, or the blanks there. Of a line too long for a block it is
/// the single character.
Stretch word_at(std::string_view line, std::size_t at) {
    if (at >= line.size() || line.size() > Text_view::long_line) {
        return {at, std::min(at + 1, line.size())};
    }
    Block_reader reader(line);
    std::size_t behind = 0;
    for (Block_word word; reader.next(word); behind = word.begin + word.length) {
        if (at < word.begin) {
            return {behind, word.begin};
        }
        if (at < word.begin + word.length) {
            return {word.begin, word.begin + word.length};
        }
    }
    return {behind, line.size()};
}

std::size_t word_right(const Text_view& text, std::size_t place) {
    const std::size_t number = text.line_at(place);
    const std::size_t start = text.line_start(number);
    const std::string_view line = text.line(number);
    if (place - start >= line.size()) {
        return text.next(place);
    }
    std::size_t to = std::max(word_at(line, place - start).to, place - start + 1);
    while (to < line.size() && is_blank(line[to])) {
        ++to;
    }
    return start + to;
}

std::size_t word_left(const Text_view& text, std::size_t place) {
    const std::size_t number = text.line_at(place);
    const std::size_t start = text.line_start(number);
    if (place == start) {
        return text.previous(place);
    }
    std::size_t to = place - start;
    while (to > 0 && is_blank(text.bytes[start + to - 1])) {
        --to;
    }
    return to == 0 ? start : start + word_at(text.line(number), to - 1).from;
}

}  // namespace

void Caret::put(std::size_t offset, bool select) {
    place_ = offset;
    anchor_ = select ? anchor_ : offset;
    column_.reset();
}

void Caret::select(std::size_t from, std::size_t to) {
    put(from);
    put(to, true);
}

std::size_t Caret::vertical(const Text_view& text, Caret_step step, std::size_t page) {
    const std::size_t line = text.line_at(place_);
    const bool pages = step == Caret_step::page_up || step == Caret_step::page_down;
    const std::size_t count = pages ? std::max<std::size_t>(page, 1) : 1;
    if (!column_) {
        column_ = text.column_of(place_);
    }
    if (step == Caret_step::up || step == Caret_step::page_up) {
        return text.offset_at(line - std::min(line, count), *column_);
    }
    return text.offset_at(std::min(line + count, text.line_count() - 1), *column_);
}

void Caret::step(const Text_view& text, Caret_step step, bool select, std::size_t page) {
    switch (step) {
        case Caret_step::left:
            return put(selects() && !select ? begin() : text.previous(place_), select);
        case Caret_step::right:
            return put(selects() && !select ? end() : text.next(place_), select);
        case Caret_step::word_left:
            return put(word_left(text, place_), select);
        case Caret_step::word_right:
            return put(word_right(text, place_), select);
        case Caret_step::line_start:
            return put(text.line_start(text.line_at(place_)), select);
        case Caret_step::line_end:
            return put(text.line_end(text.line_at(place_)), select);
        case Caret_step::text_start:
            return put(0, select);
        case Caret_step::text_end:
            return put(text.bytes.size(), select);
        default:
            break;
    }
    const std::size_t to = vertical(text, step, page);
    const auto column = column_;
    put(to, select);
    column_ = column;
}

void Caret::select_word(const Text_view& text, std::size_t offset) {
    const std::size_t number = text.line_at(offset);
    const std::size_t start = text.line_start(number);
    const std::string_view line = text.line(number);
    const std::size_t at = std::min(offset - start, line.empty() ? 0 : line.size() - 1);
    const Stretch word = word_at(line, at);
    select(start + word.from, start + word.to);
}

void Caret::select_line(const Text_view& text, std::size_t offset) {
    const std::size_t line = text.line_at(offset);
    select(text.line_start(line), text.line_start(line + 1));
}

void Caret::clamp(const Text_view& text) {
    place_ = std::min(place_, text.bytes.size());
    anchor_ = std::min(anchor_, text.bytes.size());
}

}  // namespace kelvane
