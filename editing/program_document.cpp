#include "editing/program_document.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr std::string_view line_end_bytes = "\r\n";
constexpr std::size_t max_undo_bytes = std::size_t{128} << 20;

}  // namespace

void Program_document::begin(std::string bytes) {
    *this = Program_document{};
    text_ = std::make_shared<std::string>(std::move(bytes));
}

std::string& Program_document::own_text() {
    if (text_.use_count() > 1) {
        text_ = std::make_shared<std::string>(*text_);
    }
    return *text_;
}

void Program_document::load(std::string bytes) {
    const std::uint64_t revision = revision_ + 1;
    begin(std::move(bytes));
    revision_ = revision;
}

void Program_document::begin_load(std::size_t expected) {
    load({});
    text_->reserve(expected);
}

bool Program_document::prepare(std::size_t budget) {
    if (prepared_) {
        return true;
    }
    if (checked_ < text().size()) {
        const std::string_view piece = std::string_view(text()).substr(checked_, budget);
        check_.feed(piece);
        checked_ += piece.size();
        budget -= piece.size();
        index_ = Line_index(check_.result());
    }
    prepared_ = checked_ == text().size() && index_.extend(text(), budget);
    loaded_size_ = text().size();
    return prepared_;
}

std::size_t Program_document::line_start(std::size_t line) const {
    return index_.line_start(text(), line);
}

std::size_t Program_document::line_at(std::size_t offset) const {
    return index_.line_at(text(), offset);
}

std::string_view Program_document::line(std::size_t line) const {
    return view().line(line);
}

std::string_view Program_document::line_end_at(std::size_t offset) const {
    const auto end_of = [this](std::size_t number) {
        const std::size_t begin = line_start(number) + line(number).size();
        return std::string_view(text()).substr(begin, line_start(number + 1) - begin);
    };
    const std::size_t number = line_at(offset);
    std::string_view end = end_of(number);
    if (end.empty() && number > 0) {
        end = end_of(number - 1);
    }
    return end.empty() ? cr_lf : end;
}

bool Program_document::allowed(std::size_t at, std::size_t removed, std::size_t added) const {
    return editable() && at <= text().size() && removed <= text().size() - at &&
           (added <= removed || text().size() - removed + added <= max_grown);
}

/// Changes the text and what is known of its lines, and nothing else.
void Program_document::exchange(std::size_t at, std::size_t removed, std::string_view added) {
    own_text().replace(at, removed, added);
    index_.edited(text(), at, removed, added.size());
    ++revision_;
}

bool Program_document::replace(std::size_t at, std::size_t removed, std::string_view added) {
    if (!allowed(at, removed, added.size())) {
        return false;
    }
    end_step();
    remember({at, text().substr(at, removed), std::string(added)});
    end_step();
    exchange(at, removed, added);
    return true;
}

bool Program_document::typed(std::size_t at, std::size_t removed, std::u16string_view added) {
    if (!allowed(at, removed, 0)) {
        return false;
    }
    const std::string bytes = typed_bytes(added, encoding(), line_end_at(at));
    std::string old = text().substr(at, removed);
    if (old == bytes || !allowed(at, removed, bytes.size())) {
        return false;
    }
    remember({at, std::move(old), bytes});
    exchange(at, removed, bytes);
    return true;
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

std::optional<std::size_t> Program_document::undo() {
    if (!can_undo()) {
        return std::nullopt;
    }
    end_step();
    const Edit& edit = edits_[--done_];
    exchange(edit.at, edit.added.size(), edit.removed);
    return edit.at + edit.removed.size();
}

std::optional<std::size_t> Program_document::redo() {
    if (!can_redo()) {
        return std::nullopt;
    }
    end_step();
    const Edit& edit = edits_[done_++];
    exchange(edit.at, edit.removed.size(), edit.added);
    return edit.at + edit.added.size();
}

void Program_document::mark_saved() {
    end_step();
    saved_ = done_;
}

}  // namespace kelvane
