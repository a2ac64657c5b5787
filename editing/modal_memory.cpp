#include "editing/modal_memory.h"

#include <algorithm>
#include <utility>

namespace kelvane {

void Modal_memory::begin_program() {
    state_ = {};
    before_contour_.reset();
    contour_.reset();
}

void Modal_memory::set(Modal modal, std::string word, int code) {
    Setting& setting = at(modal);
    const bool same = setting.known() && setting.code == code && setting.word == word;
    if (noting_ != nullptr) {
        auto& seen = noting_->seen[static_cast<std::size_t>(modal)];
        seen.several = seen.several || (!seen.word.empty() && seen.word != word);
        seen.word = word;
    }
    if (same && block_doubt_ != Doubt::none) {
        return;  // skipped or not, the value is the same
    }
    setting = {std::move(word), code, line_, block_doubt_, line_};
}

void Modal_memory::set_value(Modal modal, const Block_word& word) {
    set(modal, word_text(word));
    if (word.computed || word.number.empty()) {
        doubt(modal, word.computed ? Doubt::variable : Doubt::unread);
    }
}

void Modal_memory::doubt_setting(Setting& setting, Doubt why) const {
    setting.doubt = why;
    setting.doubt_line = line_;
}

void Modal_memory::doubt(Modal modal, Doubt why) {
    if (noting_ != nullptr) {
        noting_->seen[static_cast<std::size_t>(modal)].several = true;
    }
    if (!at(modal).word.empty()) {
        doubt_setting(at(modal), why);
    }
}

void Modal_memory::doubt_positions(Doubt why) {
    for (const auto& [letter, axis] : axis_letters) {
        doubt(axis, why);
    }
    forget_clearance();
}

void Modal_memory::doubt_zero_point(Doubt why) {
    doubt(Modal::work_offset, why);
    doubt_positions(why);
}

void Modal_memory::doubt_all(Doubt why) {
    for (Setting& setting : state_.settings) {
        if (setting.known()) {
            doubt_setting(setting, why);
        }
    }
    forget_clearance();
}

void Modal_memory::jump_or_target() {
    for (std::size_t i = 0; i < modal_count; ++i) {
        Setting& setting = state_.settings[i];
        certain_[i] = certain_[i] || (!jumps_begun_ && setting.known() && !survey_.seen[i].several);
        if (setting.known() && !certain_[i]) {
            doubt_setting(setting, Doubt::jump);
        }
    }
    jumps_begun_ = true;
    forget_clearance();
}

void Modal_memory::change_tool() {
    const Setting next = state_[Modal::next_tool];
    set(Modal::tool, next.word);
    if (next.doubt != Doubt::none) {
        doubt(Modal::tool, next.doubt);
    }
    for (const Modal modal : {Modal::x, Modal::y, Modal::z}) {
        doubt(modal, Doubt::tool_change);
    }
    for (const Modal modal : {Modal::spindle, Modal::mist, Modal::flood, Modal::length_comp}) {
        if (state_.active(modal) && at(modal).doubt == Doubt::none) {
            doubt(modal, Doubt::tool_change);
        }
    }
    forget_clearance();
    state_.tool_change = line_;
}

void Modal_memory::enter_contour() {
    before_contour_ = state_;
    contour_ = line_;
    state_.in_contour = true;
}

void Modal_memory::leave_contour() {
    if (before_contour_) {
        state_ = std::move(*before_contour_);
        before_contour_.reset();
    }
}

void Modal_memory::note_other(const std::string& word) {
    const auto known = std::find_if(state_.others.begin(), state_.others.end(),
                                    [&word](const Other_code& o) { return o.word == word; });
    if (known != state_.others.end()) {
        known->line = line_;
    } else if (state_.others.size() < Modal_state::max_others) {
        state_.others.push_back({word, line_});
    }
}

void Modal_memory::note_line(std::optional<std::size_t> Program_survey::*first) {
    if (noting_ != nullptr && !(noting_->*first)) {
        noting_->*first = line_;
    }
}

void Modal_memory::note_target(std::string_view number) {
    if (noting_ == nullptr) {
        return;
    }
    if (number.empty()) {
        noting_->any_target = true;
    } else {
        noting_->targets.emplace(essential_number(number));
    }
}

void Modal_memory::note_change_by_m6() {
    if (noting_ != nullptr) {
        noting_->changes_with_m6 = true;
    }
}

void Modal_memory::note_contour_use() {
    if (noting_ == nullptr || !contour_) {
        return;
    }
    if (noting_->contours.empty() || noting_->contours.back().begin != *contour_) {
        noting_->contours.push_back({*contour_, line_});
    }
    noting_->contours.back().last_use = line_;
}

bool Modal_memory::is_target(std::string_view number) const {
    return survey_.any_target || survey_.targets.contains(essential_number(number));
}

}  // namespace kelvane
