#include "editing/program_document.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr std::string_view line_end_bytes = "\r\n";
/// So many bytes before an edit may form a line end with what comes behind them.
constexpr std::size_t line_end_reach = 2;
constexpr std::size_t max_undo_bytes = std::size_t{128} << 20;

bool is_half_pair(char16_t c, char16_t first_of_kind) {
    return (c & 0xFC00U) == first_of_kind;
}

/// Units that both texts begin with, whole characters only.
std::size_t common_start(std::u16string_view one, std::u16string_view other) {
    const auto split = std::mismatch(one.begin(), one.end(), other.begin(), other.end()).first;
    auto same = static_cast<std::size_t>(split - one.begin());
    return same > 0 && is_half_pair(one[same - 1], 0xD800) ? same - 1 : same;
}

std::size_t common_end(std::u16string_view one, std::u16string_view other) {
    const auto split = std::mismatch(one.rbegin(), one.rend(), other.rbegin(), other.rend()).first;
    auto same = static_cast<std::size_t>(split - one.rbegin());
    return same > 0 && is_half_pair(one[one.size() - same], 0xDC00) ? same - 1 : same;
}

}  // namespace

void Program_document::begin(std::string bytes) {
    *this = Program_document{};
    text_ = std::move(bytes);
}

void Program_document::load(std::string bytes) {
    const std::uint64_t revision = revision_ + 1;
    begin(std::move(bytes));
    revision_ = revision;
}

void Program_document::begin_load(std::size_t expected) {
    load({});
    text_.reserve(expected);
}

bool Program_document::prepare(std::size_t budget) {
    if (prepared_) {
        return true;
    }
    if (checked_ < text_.size()) {
        const std::string_view piece = std::string_view(text_).substr(checked_, budget);
        check_.feed(piece);
        checked_ += piece.size();
        budget -= piece.size();
        index_ = Line_index(check_.result());
    }
    prepared_ = checked_ == text_.size() && index_.extend(text_, budget);
    loaded_size_ = text_.size();
    return prepared_;
}

std::size_t Program_document::line_start(std::size_t line) const {
    return index_.line_start(text_, line);
}

std::size_t Program_document::line_at(std::size_t offset) const {
    return index_.line_at(text_, offset);
}

std::string_view Program_document::line(std::size_t line) const {
    return view().line(line);
}

std::size_t Program_document::position_of(std::size_t offset) const {
    return index_.unit_at(text_, offset);
}

std::size_t Program_document::offset_of(std::size_t position) const {
    return index_.offset_of_unit(text_, position);
}

std::u16string Program_document::shown(std::size_t from, std::size_t to) const {
    return shown_text(std::string_view(text_).substr(from, to - from), encoding());
}

std::string_view Program_document::line_end_at(std::size_t offset) const {
    const auto end_of = [this](std::size_t number) {
        const std::size_t begin = line_start(number) + line(number).size();
        return std::string_view(text_).substr(begin, line_start(number + 1) - begin);
    };
    const std::size_t number = line_at(offset);
    std::string_view end = end_of(number);
    if (end.empty() && number > 0) {
        end = end_of(number - 1);
    }
    return end.empty() ? cr_lf : end;
}

bool Program_document::allowed(std::size_t at, std::size_t removed, std::size_t added) const {
    return editable() && at <= text_.size() && removed <= text_.size() - at &&
           (added <= removed || text_.size() - removed + added <= max_grown);
}

/// Where a character or a line end begins before `at` with nothing in front that an edit at `at`
/// could alter.
std::size_t Program_document::run_begin(std::size_t at) const {
    std::size_t begin = at - std::min(at, line_end_reach);
    while (begin > 0 && is_inside_character(begin)) {
        --begin;
    }
    return offset_of(position_of(begin));
}

/// The first byte at or behind `at` that begins a character, whatever stands before it.
std::size_t Program_document::run_end(std::size_t at) const {
    std::size_t end = at;
    while (end < text_.size() && (line_end_bytes.find(text_[end]) != std::string_view::npos ||
                                  is_inside_character(end))) {
        ++end;
    }
    return end;
}

bool Program_document::is_inside_character(std::size_t at) const {
    return encoding() == Text_encoding::utf8 && is_continuation(text_[at]);
}

/// Changes the text and what is known of its lines, and nothing else.
Program_document::Exchange Program_document::exchange(std::size_t at, std::size_t removed,
                                                      std::string_view added) {
    const std::size_t behind = text_.size() - run_end(at + removed);
    const std::size_t from = run_begin(at);
    const std::size_t position = position_of(from);
    std::u16string before = shown(from, text_.size() - behind);
    text_.replace(at, removed, added);
    index_.edited(text_, at, removed, added.size());
    ++revision_;
    return {position, std::move(before), shown(from, text_.size() - behind)};
}

/// Without what is the same before and after.
Shown_change Program_document::change_of(const Exchange& exchange) {
    const std::u16string_view before = exchange.before;
    const std::u16string_view after = exchange.after;
    const std::size_t same = common_start(before, after);
    const std::size_t same_end = common_end(before.substr(same), after.substr(same));
    return {exchange.position + same, before.size() - same - same_end,
            std::u16string(after.substr(same, after.size() - same - same_end))};
}

std::optional<Shown_change> Program_document::replace(std::size_t at, std::size_t removed,
                                                      std::string_view added) {
    if (!allowed(at, removed, added.size())) {
        return std::nullopt;
    }
    end_step();
    remember({at, text_.substr(at, removed), std::string(added)});
    end_step();
    return change_of(exchange(at, removed, added));
}

Shown_change Program_document::typed(std::size_t position, std::size_t removed,
                                     std::u16string_view added) {
    // Widgets count an end of the last line that no text has.
    position = std::min(position, index_.unit_count());
    removed = std::min(removed, index_.unit_count() - position);
    const std::u16string old = shown(offset_of(position), offset_of(position + removed));
    const std::size_t same = common_start(old, added);
    const std::size_t same_end =
        common_end(std::u16string_view(old).substr(same), added.substr(same));
    added = added.substr(same, added.size() - same - same_end);

    const std::size_t at = offset_of(position + same);
    const std::size_t end = offset_of(position + old.size() - same_end);
    const std::string bytes = typed_bytes(added, encoding(), line_end_at(at));
    if (at == end && bytes.empty()) {
        return {position, 0, {}};
    }
    if (!allowed(at, end - at, bytes.size())) {
        return {position + same, added.size(), shown(at, end)};
    }
    std::u16string in_widget =
        shown(run_begin(at), at) + std::u16string(added) + shown(end, run_end(end));
    remember({at, text_.substr(at, end - at), bytes});
    Exchange done = exchange(at, end - at, bytes);
    done.before = std::move(in_widget);
    return change_of(done);
}

/// Joins an edit to the step before it, as when a word is typed letter by letter.
bool Program_document::continues_step(const Edit& edit) {
    if (!step_open_ || done_ == 0 ||
        edit.added.find_first_of(line_end_bytes) != std::string::npos) {
        return false;
    }
    Edit& last = edits_.back();
    if (edit.removed.empty() && edit.at == last.at + last.added.size()) {
        last.added += edit.added;
        return true;
    }
    if (!edit.added.empty() || !last.added.empty()) {
        return false;
    }
    if (edit.at == last.at) {
        last.removed += edit.removed;
        return true;
    }
    if (edit.at + edit.removed.size() == last.at) {
        last.removed.insert(0, edit.removed);
        last.at = edit.at;
        return true;
    }
    return false;
}

void Program_document::remember(Edit edit) {
    while (edits_.size() > done_) {
        edit_bytes_ -= edits_.back().removed.size() + edits_.back().added.size();
        edits_.pop_back();
    }
    if (saved_ && *saved_ > done_) {
        saved_.reset();
    }
    edit_bytes_ += edit.removed.size() + edit.added.size();
    if (!continues_step(edit)) {
        edits_.push_back(std::move(edit));
        ++done_;
    }
    step_open_ = true;
    forget_beyond_limit();
}

void Program_document::forget_beyond_limit() {
    while (edit_bytes_ > max_undo_bytes && edits_.size() > 1) {
        edit_bytes_ -= edits_.front().removed.size() + edits_.front().added.size();
        edits_.pop_front();
        --done_;
        saved_ = saved_ && *saved_ > 0 ? std::optional(*saved_ - 1) : std::nullopt;
    }
}

std::optional<Shown_change> Program_document::undo() {
    if (!can_undo()) {
        return std::nullopt;
    }
    end_step();
    const Edit& edit = edits_[--done_];
    return change_of(exchange(edit.at, edit.added.size(), edit.removed));
}

std::optional<Shown_change> Program_document::redo() {
    if (!can_redo()) {
        return std::nullopt;
    }
    end_step();
    const Edit& edit = edits_[done_++];
    return change_of(exchange(edit.at, edit.removed.size(), edit.added));
}

void Program_document::mark_saved() {
    end_step();
    saved_ = done_;
}

}  // namespace kelvane
