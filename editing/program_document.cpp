#include "editing/program_document.h"

#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

constexpr std::string_view cr_and_lf = "\r\n";
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
    const std::size_t start = line_start(line);
    std::string_view bytes = text_;
    bytes = bytes.substr(start, line_start(line + 1) - start);
    bytes.remove_suffix(bytes.ends_with('\n') ? 1 : 0);
    bytes.remove_suffix(bytes.ends_with('\r') ? 1 : 0);
    return bytes;
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
    const std::size_t line = line_at(offset);
    std::size_t end = line_start(line + 1);
    if (end == text_.size() && !text_.ends_with('\n') && !text_.ends_with('\r')) {
        end = line_start(line);
    }
    if (end == 0) {
        return cr_and_lf;
    }
    const bool pair = end >= 2 && text_.compare(end - 2, 2, cr_and_lf) == 0;
    return std::string_view(text_).substr(end - (pair ? 2 : 1), pair ? 2 : 1);
}

/// What Enter writes in place of the bytes from `at` to `end`: never half of a CR LF with what
/// stands there.
std::string_view Program_document::line_end_between(std::size_t at, std::size_t end) const {
    const std::string_view usual = line_end_at(at);
    const bool meets_cr = at > 0 && text_[at - 1] == '\r' && usual.front() == '\n';
    const bool meets_lf = end < text_.size() && text_[end] == '\n' && usual.back() == '\r';
    return meets_cr || meets_lf ? cr_and_lf : usual;
}

bool Program_document::allowed(std::size_t at, std::size_t removed, std::size_t added) const {
    return editable() && at <= text_.size() && removed <= text_.size() - at &&
           (added <= removed || text_.size() - removed + added <= max_grown);
}

/// A CR before and an LF behind an edit may form one line end or two.
Program_document::Range Program_document::affected(std::size_t at, std::size_t length) const {
    const std::size_t end = at + length;
    return {at - (at > 0 && text_[at - 1] == '\r' ? 1 : 0),
            end + (end < text_.size() && text_[end] == '\n' ? 1 : 0)};
}

/// Changes the text and what is known of its lines, and nothing else.
Shown_change Program_document::exchange(std::size_t at, std::size_t removed,
                                        std::string_view added) {
    const Range before = affected(at, removed);
    Shown_change change;
    change.position = position_of(before.from);
    change.removed = position_of(before.to) - change.position;
    text_.replace(at, removed, added);
    index_.edited(text_, at, removed, added.size());
    ++revision_;
    const Range after = affected(at, added.size());
    change.added = shown(after.from, after.to);
    return change;
}

std::optional<Shown_change> Program_document::replace(std::size_t at, std::size_t removed,
                                                      std::string_view added) {
    if (!allowed(at, removed, added.size())) {
        return std::nullopt;
    }
    end_step();
    remember({at, text_.substr(at, removed), std::string(added)});
    end_step();
    return exchange(at, removed, added);
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
    const std::string bytes = typed_bytes(added, encoding(), line_end_between(at, end));
    if (at == end && bytes.empty()) {
        return {position, 0, {}};
    }
    if (!allowed(at, end - at, bytes.size())) {
        return {position + same, added.size(), shown(at, end)};
    }
    const Range around = affected(at, end - at);
    const std::u16string in_widget =
        shown(around.from, at) + std::u16string(added) + shown(end, around.to);
    remember({at, text_.substr(at, end - at), bytes});
    Shown_change change = exchange(at, end - at, bytes);
    if (change.added == in_widget) {
        return {position, 0, {}};
    }
    change.removed = in_widget.size();
    return change;
}

/// Joins an edit to the step before it, as when a word is typed letter by letter.
bool Program_document::continues_step(const Edit& edit) {
    if (!step_open_ || done_ == 0 || edit.added.find_first_of(cr_and_lf) != std::string::npos) {
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
    return exchange(edit.at, edit.added.size(), edit.removed);
}

std::optional<Shown_change> Program_document::redo() {
    if (!can_redo()) {
        return std::nullopt;
    }
    end_step();
    const Edit& edit = edits_[done_++];
    return exchange(edit.at, edit.removed.size(), edit.added);
}

void Program_document::mark_saved() {
    end_step();
    saved_ = done_;
}

}  // namespace kelvane
