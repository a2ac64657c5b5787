#include "editing/modal_state.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr std::array<std::string_view, 16> doubt_texts = {
    "",
    "the axis has moved by a distance",
    "absolute or incremental is not known",
    "it is the value of a variable",
    "a sub-program has run",
    "another file has run",
    "jumps lead from or to",
    "it depends on block skip",
    "the axis has gone to a place of the machine",
    "the tool has been changed",
    "the zero point has been changed",
    "the coordinates are transformed",
    "a cycle has moved the axis",
    "a program has ended",
    "makers give it different meanings",
    "what cannot be read stands in"};

constexpr std::array<std::pair<char, Modal>, 6> axes = {{{'X', Modal::x},
                                                         {'Y', Modal::y},
                                                         {'Z', Modal::z},
                                                         {'A', Modal::a},
                                                         {'B', Modal::b},
                                                         {'C', Modal::c}}};
constexpr std::array<std::pair<char, Modal>, 3> secondary_axes = {
    {{'U', Modal::x}, {'V', Modal::y}, {'W', Modal::z}}};

constexpr std::array<std::string_view, 17> jump_statements = {
    "GOTO", "GOTOF", "GOTOB", "GOTOC", "WHILE", "DO",   "END",    "REPEAT", "UNTIL",
    "LOOP", "FOR",   "ELSE",  "ENDIF", "CASE",  "ENDW", "ENDFOR", "ENDLOOP"};
constexpr std::array<std::string_view, 8> harmless_statements = {"THEN",  "POPEN", "PCLOS", "DPRNT",
                                                                 "BPRNT", "SETVN", "MSG",   "IF"};

template <typename List>
bool holds_name(const List& list, std::string_view name) {
    return std::find(list.begin(), list.end(), name) != list.end();
}

/// A word as the program wrote it, in capitals and without blanks.
std::string text_of(const Block_word& word) {
    std::string text(1, word.letter);
    return text.append(word.computed ? std::string_view("#") : word.number);
}

bool is_zero(std::string_view number) {
    return number.find_first_of("123456789") == std::string_view::npos;
}

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

Block_words::Block_words(std::string_view line) {
    Block_reader reader(line);
    Block_word word;
    while (reader.next(word)) {
        switch (word.kind) {
            case Word_kind::comment:
            case Word_kind::controls:
            case Word_kind::tape_mark:
                continue;
            case Word_kind::block_skip:
                skip = true;
                continue;
            case Word_kind::block_number:
                if (!word.number.empty()) {
                    number = word.number;
                    continue;
                }
                unread = true;
                break;
            case Word_kind::program_number:
                if (!any) {
                    program_number = word;
                }
                break;
            case Word_kind::g_code:
                g.push_back(word);
                break;
            case Word_kind::m_code:
                m.push_back(word);
                break;
            case Word_kind::statement:
                statements.push_back(word);
                break;
            case Word_kind::expression:
                variable = true;
                break;
            case Word_kind::unread:
                unread = true;
                break;
            default:
                others.push_back(word);
        }
        variable = variable || word.computed;
        any = true;
    }
}

const Block_word* Block_words::operator[](char letter) const {
    const auto found = std::find_if(others.rbegin(), others.rend(),
                                    [letter](const Block_word& w) { return w.letter == letter; });
    return found == others.rend() ? nullptr : &*found;
}

bool Block_words::has_axes() const {
    return std::any_of(others.begin(), others.end(),
                       [](const Block_word& w) { return w.kind == Word_kind::axis; });
}

Modal_reader::Modal_reader(Machining machining, Program_survey& survey)
    : machining_(machining), noting_(&survey), survey_(survey) {}

Modal_reader::Modal_reader(Machining machining, const Program_survey& survey)
    : machining_(machining), noting_(nullptr), survey_(survey) {}

void Modal_reader::read_line(std::string_view line) {
    const Block_words block(line);
    if (block.any || block.number) {
        read_block(block);
    }
    ++line_;
}

void Modal_reader::read_block(const Block_words& block) {
    axes_ = Axes::positions;
    dwell_ = false;
    block_doubt_ = block.skip ? Doubt::block_skip : Doubt::none;
    if (block.program_number) {
        state_ = {};  // another program, which nobody may have started from the one above
        before_contour_.reset();
        contour_begin_.clear();
        clearance_awaited_ = false;
    }
    if (block.number && is_target(*block.number)) {
        jump_or_target();
    }
    if (block.variable) {
        note_line(&Program_survey::first_variable);
    }
    if (block.number && !contour_begin_.empty() && same_number(*block.number, contour_begin_)) {
        before_contour_ = state_;
        contour_begin_.clear();
        state_.in_contour = true;
    }
    read_g_codes(block);
    read_values(block);
    read_axes(block);
    read_m_codes(block);
    keep_clearance(block);
    read_statements(block);
    if (block.unread) {
        doubt_all(Doubt::unread);
    }
    leave_contour(block);
}

void Modal_reader::read_statements(const Block_words& block) {
    const auto is_named = [&block](std::string_view name) {
        return std::any_of(
            block.statements.begin(), block.statements.end(),
            [name](const Block_word& word) { return upper_case(word.name) == name; });
    };
    for (const Block_word& word : block.statements) {
        const std::string name = upper_case(word.name);
        if (name == "CALL") {
            note_line(&Program_survey::first_called_file);
            doubt_all(Doubt::called_file);
        } else if (holds_name(jump_statements, name) || (name == "IF" && !is_named("THEN"))) {
            read_jump(word);
        } else if (!holds_name(harmless_statements, name)) {
            doubt_all(Doubt::unread);
        }
    }
}

void Modal_reader::read_jump(const Block_word& statement) {
    note_line(&Program_survey::first_jump);
    if (noting_ != nullptr && upper_case(statement.name).starts_with("GOTO")) {
        if (statement.number.empty()) {
            noting_->any_target = true;
        } else {
            noting_->targets.emplace(essential_number(statement.number));
        }
    }
    jump_or_target();
}

void Modal_reader::read_g_codes(const Block_words& block) {
    for (const Block_word& word : block.g) {
        read_g_code(word, block);
    }
}

void Modal_reader::read_g_code(const Block_word& word, const Block_words& block) {
    const auto code = g_code(word.number);
    if (!code || word.number.empty()) {
        doubt_all(word.computed ? Doubt::variable : Doubt::unread);
        axes_ = Axes::unknown;
        return;
    }
    const G_use use = g_use(*code, machining_);
    switch (use.effect) {
        case G_effect::holds:
            hold(use, *code, word, block);
            break;
        case G_effect::once:
            break;
        case G_effect::no_axes:
            axes_ = Axes::nothing;
            dwell_ = true;
            break;
        case G_effect::data:
            axes_ = Axes::nothing;
            dwell_ = true;
            doubt(Modal::work_offset, Doubt::offset_change);
            doubt_positions(Doubt::offset_change);
            break;
        case G_effect::reference:
            axes_ = Axes::reference;
            break;
        case G_effect::shift:
            read_shift(block, text_of(word));
            break;
        case G_effect::contour:
            read_contour(block);
            break;
        case G_effect::call:
            note_line(&Program_survey::first_call);
            doubt_all(Doubt::sub_program);
            axes_ = Axes::nothing;
            dwell_ = true;
            break;
        case G_effect::maker_differs:
            note_other(text_of(word));
            axes_ = Axes::unknown;
            break;
    }
}

void Modal_reader::hold(const G_use& use, int code, const Block_word& word,
                        const Block_words& block) {
    std::string text = text_of(word);
    const bool changed = at(use.group).code != code;
    if (block['P'] && (use.group == Modal::work_offset || use.group == Modal::macro_call)) {
        text += ' ' + text_of(*block['P']);
    }
    set(use.group, std::move(text), code);
    if (!use.certain) {
        doubt(use.group, Doubt::maker_differs);
    }
    if (use.group == Modal::motion) {
        set(Modal::cycle, "G80", 800);
    }
    if (changed && (use.group == Modal::work_offset || use.group == Modal::units)) {
        doubt_positions(Doubt::offset_change);
    }
    if (changed && use.group == Modal::speed_mode && !block['S']) {
        doubt(Modal::speed, Doubt::maker_differs);
    }
    if (use.group == Modal::length_comp) {
        clearance_awaited_ = !is_off_code(use.group, code);
        state_.clearance = {};
    }
    if (use.group == Modal::macro_call && state_.active(use.group)) {
        note_line(&Program_survey::first_call);
        doubt_all(Doubt::sub_program);
        axes_ = Axes::nothing;
    }
}

/// G52, G92 and a lathe's G50: a shift of the zero point, or with S alone the greatest speed.
void Modal_reader::read_shift(const Block_words& block, std::string_view g_word) {
    axes_ = Axes::shift;
    std::string text(g_word);
    if (!block.has_axes() && block['S']) {
        set(Modal::speed_limit, text + ' ' + text_of(*block['S']));
        if (block['S']->computed) {
            doubt(Modal::speed_limit, Doubt::variable);
        }
        return;
    }
    const std::string& shifted = state_[Modal::local_shift].word;
    bool ends = g_word == "G52" && !shifted.starts_with("G92");
    for (const auto& [letter, axis] : axes) {
        const Block_word* const word = block[letter];
        if (word != nullptr) {
            text += ' ' + text_of(*word);
        }
        const bool to_zero = word != nullptr && !word->computed && is_zero(word->number);
        const bool named = word != nullptr || shifted.find(letter) != std::string::npos;
        ends = ends && (to_zero || !named);
    }
    set(Modal::local_shift, text, ends ? no_shift : -1);
    doubt_positions(Doubt::offset_change);
}

void Modal_reader::read_contour(const Block_words& block) {
    axes_ = Axes::nothing;
    doubt_positions(Doubt::cycle);
    doubt(Modal::feed, Doubt::maker_differs);  // a finishing cycle takes those of the contour
    if (block['P'] && block['Q'] && !block['X'] && !block['Z']) {
        contour_begin_ = block['P']->number;
        contour_end_ = block['Q']->number;
    }
}

/// The blocks of a contour are read by the cycle; behind them the control is where it was before.
void Modal_reader::leave_contour(const Block_words& block) {
    if (before_contour_ && block.number && same_number(*block.number, contour_end_)) {
        state_ = std::move(*before_contour_);
        before_contour_.reset();
    }
}

void Modal_reader::read_axes(const Block_words& block) {
    if (axes_ == Axes::nothing || axes_ == Axes::shift) {
        return;
    }
    const bool draws = machining_ == Machining::turning && (block['X'] || block['Z']);
    for (const auto& [letter, axis] : axes) {
        // Beside X or Z a lathe's A is an angle and its C a chamfer.
        const bool of_drawing = draws && (axis == Modal::a || axis == Modal::c);
        if (block[letter] && !of_drawing) {
            read_axis(axis, *block[letter]);
        }
    }
    for (const auto& [letter, axis] : secondary_axes) {
        read_incremental(axis, block[letter]);
    }
    // A cycle runs along its own axis, which its block need not name.
    if (block.has_axes() && state_.active(Modal::cycle) && axes_ == Axes::positions) {
        const int plane = state_[Modal::plane].code;
        doubt(plane == 180 ? Modal::y : plane == 190 ? Modal::x : Modal::z, Doubt::cycle);
    }
}

void Modal_reader::read_axis(Modal axis, const Block_word& word) {
    if (axes_ == Axes::reference) {
        doubt(axis, Doubt::reference);
        return;
    }
    const Doubt why = word.computed            ? Doubt::variable
                      : word.number.empty()    ? Doubt::unread
                      : axes_ == Axes::unknown ? Doubt::maker_differs
                                               : position_doubt();
    if (why == Doubt::incremental) {
        doubt(axis, why);  // what it was before is worth showing
        return;
    }
    set(axis, text_of(word));
    if (why != Doubt::none) {
        doubt(axis, why);
    }
}

/// U, V and W: on lathes X, Y and Z by a distance, on mills axes of their own on some.
void Modal_reader::read_incremental(Modal axis, const Block_word* word) {
    if (!word) {
        return;
    }
    const bool turning = machining_ == Machining::turning;
    doubt(axis, axes_ == Axes::reference ? Doubt::reference
                : turning                ? Doubt::incremental
                                         : Doubt::maker_differs);
}

Doubt Modal_reader::position_doubt() const {
    for (const Modal group :
         {Modal::scaling, Modal::mirror, Modal::rotation, Modal::polar, Modal::interpolation}) {
        if (state_.active(group)) {
            return Doubt::transformation;
        }
    }
    if (state_.active(Modal::macro_call)) {
        return Doubt::sub_program;
    }
    if (machining_ == Machining::turning) {
        return state_.active(Modal::cycle) ? Doubt::cycle : Doubt::none;
    }
    const Setting& distance = state_[Modal::distance];
    if (!distance.known()) {
        return Doubt::distance;
    }
    return distance.code == 910 ? Doubt::incremental : Doubt::none;
}

void Modal_reader::read_values(const Block_words& block) {
    if (dwell_) {
        return;
    }
    if (block['F']) {
        set_value(Modal::feed, *block['F']);
    }
    if (block['S'] && axes_ != Axes::shift) {
        set_value(Modal::speed, *block['S']);
    }
    if (machining_ == Machining::milling && block['D'] && axes_ != Axes::unknown) {
        set_value(Modal::radius_number, *block['D']);
    }
    if (machining_ == Machining::milling && block['H'] && axes_ != Axes::unknown) {
        set_value(Modal::length_number, *block['H']);
    }
    if (block['T']) {
        set_value(Modal::next_tool, *block['T']);
        if (machining_ == Machining::turning || !survey_.changes_with_m6) {
            change_tool();
        }
    }
    const bool l_alone = block['L'] && block.g.empty() && block.m.empty() && !block.has_axes();
    if (l_alone) {
        note_line(&Program_survey::first_call);
        doubt_all(Doubt::sub_program);
    }
}

void Modal_reader::read_m_codes(const Block_words& block) {
    for (const Block_word& word : block.m) {
        const auto code = m_code(word.number);
        if (!code || word.number.empty()) {
            doubt_all(word.computed ? Doubt::variable : Doubt::unread);
        } else {
            read_m_code(*code, word);
        }
    }
    const bool repeats = std::any_of(block.m.begin(), block.m.end(), [](const Block_word& word) {
        return m_code(word.number) == 99;
    });
    if (repeats && block['P'] && noting_ != nullptr) {
        noting_->any_target = true;
    }
}

void Modal_reader::read_m_code(int code, const Block_word& word) {
    const M_use use = m_use(code);
    switch (use.effect) {
        case M_effect::holds:
            set(use.group, text_of(word), code);
            break;
        case M_effect::once:
            break;
        case M_effect::coolant_off:
            set(Modal::mist, text_of(word), code);
            set(Modal::flood, text_of(word), code);
            break;
        case M_effect::tool_change:
            if (noting_ != nullptr) {
                noting_->changes_with_m6 = true;
            }
            change_tool();
            break;
        case M_effect::call:
            note_line(&Program_survey::first_call);
            doubt_all(Doubt::sub_program);
            break;
        case M_effect::ends:
            doubt_all(Doubt::program_end);
            break;
        case M_effect::other:
            note_other(text_of(word));
            break;
    }
}

/// Machines go somewhere to change, and stop what runs or leave that to the program.
void Modal_reader::change_tool() {
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
    state_.clearance = {};
    state_.tool_change = line_;
}

/// The height of the first rapid move with a new length compensation.
void Modal_reader::keep_clearance(const Block_words& block) {
    if (!clearance_awaited_ || !block['Z'] || axes_ != Axes::positions) {
        return;
    }
    clearance_awaited_ = false;
    const Setting& motion = state_[Modal::motion];
    if (motion.known() && motion.code == 0) {
        state_.clearance = state_[Modal::z];
    }
}

void Modal_reader::set(Modal modal, std::string word, int code) {
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

void Modal_reader::set_value(Modal modal, const Block_word& word) {
    set(modal, text_of(word));
    if (word.computed || word.number.empty()) {
        doubt(modal, word.computed ? Doubt::variable : Doubt::unread);
    }
}

void Modal_reader::doubt(Modal modal, Doubt why) {
    if (noting_ != nullptr) {
        noting_->seen[static_cast<std::size_t>(modal)].several = true;
    }
    Setting& setting = at(modal);
    if (!setting.word.empty()) {
        setting.doubt = why;
        setting.doubt_line = line_;
    }
}

void Modal_reader::doubt_positions(Doubt why) {
    for (const auto& [letter, axis] : axes) {
        doubt(axis, why);
    }
    state_.clearance = {};
}

void Modal_reader::doubt_all(Doubt why) {
    for (Setting& setting : state_.settings) {
        if (setting.known()) {
            setting.doubt = why;
            setting.doubt_line = line_;
        }
    }
    state_.clearance = {};
}

/// A jump leaves here, or may arrive here. Only what has been set before the first of them, and
/// nowhere to anything else, holds on every way through the program.
void Modal_reader::jump_or_target() {
    for (std::size_t i = 0; i < modal_count; ++i) {
        Setting& setting = state_.settings[i];
        certain_[i] = certain_[i] || (!jumps_begun_ && setting.known() && !survey_.seen[i].several);
        if (setting.known() && !certain_[i]) {
            setting.doubt = Doubt::jump;
            setting.doubt_line = line_;
        }
    }
    jumps_begun_ = true;
    state_.clearance = {};
}

void Modal_reader::note_other(const std::string& word) {
    const auto known = std::find_if(state_.others.begin(), state_.others.end(),
                                    [&word](const Other_code& o) { return o.word == word; });
    if (known != state_.others.end()) {
        known->line = line_;
    } else if (state_.others.size() < Modal_state::max_others) {
        state_.others.push_back({word, line_});
    }
}

void Modal_reader::note_line(std::optional<std::size_t> Program_survey::*first) {
    if (noting_ != nullptr && !(noting_->*first)) {
        noting_->*first = line_;
    }
}

bool Modal_reader::is_target(std::string_view number) const {
    return survey_.any_target || survey_.targets.contains(essential_number(number));
}

}  // namespace kelvane
