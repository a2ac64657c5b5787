#include "editing/modal_state.h"

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr std::array<std::string_view, 17> doubt_texts = {
    "",
    "the axis has moved by a distance",
    "absolute or incremental is not known",
    "it is the value of a variable",
    "a sub-program has run",
    "another file has run",
    "jumps lead from or to",
    "it depends on block skip",
    "it depends on a condition",
    "the axis has gone to a place of the machine",
    "the tool has been changed",
    "the zero point has been changed",
    "the coordinates are transformed",
    "a cycle has moved the axis",
    "a program has ended",
    "makers give it different meanings",
    "what cannot be read stands in"};

}  // namespace

std::string_view doubt_text(Doubt doubt) {
    return doubt_texts[static_cast<std::size_t>(doubt)];
}

std::string setting_text(const Setting& setting) {
    const auto line = [](std::size_t number) {
        return "line " + decimal(static_cast<std::int64_t>(number) + 1);
    };
    if (setting.word.empty()) {
        return "not set before";
    }
    std::string text = setting.word + ", " + line(setting.line);
    if (!setting.known()) {
        text.append(", but ").append(doubt_text(setting.doubt)).append(", ");
        text += line(setting.doubt_line);
    }
    return text;
}

bool Modal_state::active(Modal group) const {
    const Setting& setting = (*this)[group];
    return !setting.word.empty() &&
           (setting.doubt != Doubt::none || !is_off_code(group, setting.code));
}

bool Modal_state::on(Modal group) const {
    return active(group) && !is_off_code(group, (*this)[group].code);
}

Doubt position_doubt(const Modal_state& state, Machining machining) {
    for (const Modal group :
         {Modal::scaling, Modal::mirror, Modal::rotation, Modal::polar, Modal::interpolation}) {
        if (state.active(group)) {
            return Doubt::transformation;
        }
    }
    if (state.active(Modal::macro_call)) {
        return Doubt::sub_program;
    }
    const bool turning = machining == Machining::turning;
    if (turning && state.active(Modal::cycle)) {
        return Doubt::cycle;
    }
    const Setting& distance = state[Modal::distance];
    if (turning && distance.word.empty()) {
        return Doubt::none;
    }
    if (!distance.known()) {
        return Doubt::distance;
    }
    return distance.code == 910 ? Doubt::incremental : Doubt::none;
}

}  // namespace kelvane
