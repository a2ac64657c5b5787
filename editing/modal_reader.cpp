#include "editing/modal_reader.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

bool is_named(const Block_words& block, std::string_view name) {
    return std::any_of(block.statements.begin(), block.statements.end(),
                       [name](const Block_word& word) { return upper_case(word.name) == name; });
}

/// What stands behind IF and THEN is done or left out.
bool has_condition(const Block_words& block) {
    return is_named(block, "IF") && is_named(block, "THEN");
}

/// With an H of its own a code for offsets is another on some controls, that for the tool's length
/// among them.
bool counts_by_h(Modal group, const Block_words& block) {
    const bool has_length_code =
        std::any_of(block.g.begin(), block.g.end(), [](const Block_word& word) {
            const int code = g_code(word.number).value_or(-1);
            return code >= 430 && code < 450;
        });
    return (group == Modal::work_offset || group == Modal::polar) && block['H'] && !has_length_code;
}

}  // namespace

void Modal_reader::read_line(std::string_view line) {
    const Block_words block(line);
    if (block.any || block.number) {
        read_block(block);
    }
    memory_.end_line();
}

void Modal_reader::begin_block(const Block_words& block) {
    axes_ = Axes::positions;
    dwell_ = false;
    memory_.begin_block(block.skip             ? Doubt::block_skip
                        : has_condition(block) ? Doubt::condition
                                               : Doubt::none);
    if (block.program_number) {
        memory_.begin_program();
        contour_begin_.clear();
        contour_entered_.clear();
        clearance_awaited_ = false;
    }
    if (block.number && memory_.is_target(*block.number)) {
        memory_.jump_or_target();
    }
    if (block.variable) {
        memory_.note_line(&Program_survey::first_variable);
    }
    if (block.sets_offset) {
        memory_.doubt_zero_point(Doubt::offset_change);
    }
    if (block.number && !contour_begin_.empty() && same_number(*block.number, contour_begin_)) {
        memory_.enter_contour();
        contour_entered_ = std::exchange(contour_begin_, {});
    }
}

void Modal_reader::read_block(const Block_words& block) {
    begin_block(block);
    read_g_codes(block);
    read_values(block);
    read_axes(block, axes_, machining_, memory_);
    read_m_codes(block);
    keep_clearance(block);
    read_statements(block);
    if (block.unread) {
        memory_.doubt_all(Doubt::unread);
    }
    leave_contour(block);
}

void Modal_reader::read_statements(const Block_words& block) {
    for (const Block_word& word : block.statements) {
        const std::string name = upper_case(word.name);
        switch (statement_effect(name)) {
            case Statement_effect::call:
                call(&Program_survey::first_called_file, Doubt::called_file);
                break;
            case Statement_effect::condition:
                if (!has_condition(block)) {
                    read_jump(word);
                }
                break;
            case Statement_effect::jump:
                read_jump(word);
                break;
            case Statement_effect::harmless:
                break;
            case Statement_effect::unread:
                memory_.doubt_all(Doubt::unread);
                break;
        }
    }
}

void Modal_reader::read_jump(const Block_word& statement) {
    memory_.note_line(&Program_survey::first_jump);
    if (upper_case(statement.name).starts_with("GOTO")) {
        memory_.note_target(statement.number);
    }
    memory_.jump_or_target();
}

void Modal_reader::read_g_codes(const Block_words& block) {
    for (const Block_word& word : block.g) {
        read_g_code(word, block);
    }
}

void Modal_reader::read_g_code(const Block_word& word, const Block_words& block) {
    const auto code = g_code(word.number);
    if (!code || word.number.empty()) {
        memory_.doubt_all(word.computed ? Doubt::variable : Doubt::unread);
        axes_ = Axes::unknown;
        return;
    }
    const G_use use = use_of(*code, block);
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
            memory_.doubt_zero_point(Doubt::offset_change);
            break;
        case G_effect::reference:
            axes_ = Axes::reference;
            if (!block.has_axes()) {
                memory_.doubt_positions(Doubt::reference);  // some controls take all axes then
            }
            break;
        case G_effect::shift:
            axes_ = Axes::shift;
            read_shift(block, word_text(word), memory_);
            break;
        case G_effect::contour:
            read_contour(*code, block);
            break;
        case G_effect::call:
            call(&Program_survey::first_call, Doubt::sub_program);
            axes_ = Axes::nothing;
            dwell_ = true;
            break;
        case G_effect::noted:
            memory_.note_other(word_text(word));
            break;
        case G_effect::maker_differs:
            read_unknown_code(word, block);
            break;
    }
}

/// It may choose another zero point and, with places to go, be a motion or a cycle of its own.
void Modal_reader::read_unknown_code(const Block_word& word, const Block_words& block) {
    memory_.note_other(word_text(word));
    memory_.note_unknown_code();
    memory_.doubt_zero_point(Doubt::maker_differs);
    if (block.has_axes()) {
        memory_.doubt(Modal::motion, Doubt::maker_differs);
        memory_.doubt(Modal::cycle, Doubt::maker_differs);
    }
    axes_ = Axes::unknown;
}

/// Where a lathe's G90, G92 or G94 names no way to go, or its G70 or G71 no contour, it is no cycle
/// but of another set of codes, where they are what they are on mills.
G_use Modal_reader::use_of(int code, const Block_words& block) const {
    const G_use use = g_use(code, machining_);
    const bool is_cycle =
        use.effect == G_effect::contour ||
        (use.effect == G_effect::holds && use.group == Modal::cycle && code >= 900);
    const bool says_way = block.has_axes() || block['P'] || block['R'];
    const bool has_other_use = code == 700 || code == 710 || code >= 900;
    return is_cycle && has_other_use && !says_way ? g_use(code, Machining::milling) : use;
}

void Modal_reader::hold(const G_use& use, int code, const Block_word& word,
                        const Block_words& block) {
    std::string text = word_text(word);
    const Setting before = state()[use.group];
    if (const Block_word* const p = p_of(word, use.group, block)) {
        text += ' ' + word_text(*p);
    }
    memory_.set(use.group, std::move(text), code);
    if (!use.certain || counts_by_h(use.group, block)) {
        memory_.doubt(use.group, Doubt::maker_differs);
    }
    if (use.group == Modal::motion) {
        memory_.set(Modal::cycle, "G80", 800);
    }
    doubt_numbers(use.group, before, block);
    take_axes(use, code);
    if (use.group == Modal::length_comp) {
        clearance_awaited_ = !is_off_code(use.group, code);
        memory_.forget_clearance();
        memory_.note_lone_number(false);
    }
    if (use.group == Modal::macro_call && state().active(use.group)) {
        call(&Program_survey::first_call, Doubt::sub_program);
        axes_ = Axes::nothing;
    }
}

/// The axis words of a mirror, of its end too, and those of a scaling or a rotation say where it
/// lies; those of a smoothing may be anything.
void Modal_reader::take_axes(const G_use& use, int code) {
    const bool on = !is_off_code(use.group, code);
    const bool lies = (use.group == Modal::scaling || use.group == Modal::rotation) && on;
    if (use.group == Modal::mirror || lies) {
        axes_ = Axes::nothing;
    } else if (!use.certain &&
               (use.group == Modal::path_mode || use.group == Modal::interpolation)) {
        axes_ = Axes::unknown;
    }
}

/// The P that chooses among a code's offsets, or its macro; null for one of another code's.
const Block_word* Modal_reader::p_of(const Block_word& word, Modal group,
                                     const Block_words& block) const {
    if (group != Modal::work_offset && group != Modal::macro_call) {
        return nullptr;
    }
    const auto p = std::find_if(
        block.others.begin(), block.others.end(),
        [&word](const Block_word& w) { return w.letter == 'P' && w.begin > word.begin; });
    if (p == block.others.end()) {
        return nullptr;
    }
    const bool always_takes_one = word.number.find('.') != std::string_view::npos;
    const bool is_shared = std::any_of(block.g.begin(), block.g.end(),
                                       [this](const Block_word& w) {
                                           const int code = g_code(w.number).value_or(-1);
                                           return takes_p(g_use(code, machining_), code);
                                       }) ||
                           std::any_of(block.m.begin(), block.m.end(), [](const Block_word& w) {
                               return takes_p(m_use(m_code(w.number).value_or(-1)));
                           });
    return is_shared && !always_takes_one && &*p == block['P'] ? nullptr : &*p;
}

/// Numbers that stand for something else since a code of `group` has changed.
void Modal_reader::doubt_numbers(Modal group, const Setting& before, const Block_words& block) {
    if (group == Modal::length_comp && !block['Z']) {
        memory_.doubt(Modal::z, Doubt::offset_change);
    }
    const Setting& now = state()[group];
    if (group == Modal::work_offset && (now.word != before.word || !before.known())) {
        memory_.doubt_positions(Doubt::offset_change);
    }
    if (before.known() && now.code == before.code) {
        return;
    }
    if (group == Modal::units) {
        memory_.doubt_positions(Doubt::offset_change);
    }
    if (group == Modal::speed_mode && !block['S']) {
        memory_.doubt(Modal::speed, Doubt::maker_differs);
    }
    if ((group == Modal::feed_mode || group == Modal::units) && !block['F']) {
        memory_.doubt(Modal::feed, Doubt::maker_differs);
    }
    // G94 and G95 are of another set of lathe codes than G98 and G99.
    const auto is_of_other_set = [](int code) { return code >= 980; };
    if (group == Modal::feed_mode && before.code >= 0 &&
        is_of_other_set(before.code) != is_of_other_set(now.code)) {
        memory_.doubt(group, Doubt::maker_differs);
    }
}

void Modal_reader::read_contour(int code, const Block_words& block) {
    axes_ = Axes::nothing;
    memory_.contour_cycle();
    if (code == 700 && block['P'] && same_number(block['P']->number, contour_entered_)) {
        memory_.note_contour_use();
    }
    memory_.doubt_positions(Doubt::cycle);
    memory_.doubt(Modal::feed,
                  Doubt::maker_differs);  // a finishing cycle takes those of the contour
    if (block['P'] && block['Q'] && !block['X'] && !block['Z']) {
        contour_begin_ = block['P']->number;
        contour_end_ = block['Q']->number;
    }
}

void Modal_reader::leave_contour(const Block_words& block) {
    if (state().in_contour && block.number && same_number(*block.number, contour_end_)) {
        memory_.leave_contour();
    }
}

void Modal_reader::read_values(const Block_words& block) {
    if (dwell_) {
        return;
    }
    if (block['F']) {
        memory_.set_value(Modal::feed, *block['F']);
    }
    if (block['S'] && axes_ != Axes::shift) {
        memory_.set_value(Modal::speed, *block['S']);
    }
    if (machining_ == Machining::milling && axes_ != Axes::unknown) {
        read_offsets(block);
    }
    if (block['T']) {
        memory_.set_value(Modal::next_tool, *block['T']);
        if (machining_ == Machining::turning || !memory_.survey().changes_with_m6) {
            memory_.change_tool();
        }
    }
    if (axes_ == Axes::unknown) {
        doubt_arguments();
    }
    const bool l_alone = block['L'] && block.g.empty() && block.m.empty() && !block.has_axes();
    if (l_alone) {
        call(&Program_survey::first_call, Doubt::sub_program);
    }
}

void Modal_reader::read_offsets(const Block_words& block) {
    const bool by_code = state().on(Modal::length_comp);
    if (const Block_word* const d = block['D']) {
        memory_.set_value(Modal::radius_number, *d);
        const bool of_radius = by_code || state().on(Modal::radius_comp);
        memory_.note_lone_number(state().lone_number || !(of_radius || is_given_as_zero(d)));
    }
    if (const Block_word* const h = block['H']) {
        memory_.set_value(Modal::length_number, *h);
        memory_.note_lone_number(state().lone_number || !(by_code || is_given_as_zero(h)));
        memory_.forget_clearance();
        clearance_awaited_ = by_code;
        if (!block['Z']) {
            memory_.doubt(Modal::z, Doubt::offset_change);
        }
    }
}

/// A feed or speed beside an unknown code is perhaps said to a macro.
void Modal_reader::doubt_arguments() {
    for (const Modal modal : {Modal::feed, Modal::speed}) {
        if (state()[modal].known() && state()[modal].line == memory_.lines()) {
            memory_.doubt(modal, Doubt::maker_differs);
        }
    }
}

void Modal_reader::read_m_codes(const Block_words& block) {
    for (const Block_word& word : block.m) {
        const auto code = m_code(word.number);
        if (!code || word.number.empty()) {
            memory_.doubt_all(word.computed ? Doubt::variable : Doubt::unread);
        } else {
            read_m_code(*code, word);
        }
    }
    const bool repeats = std::any_of(block.m.begin(), block.m.end(), [](const Block_word& word) {
        return m_code(word.number) == 99;
    });
    if (repeats && block['P']) {
        memory_.note_target({});
    }
}

void Modal_reader::read_m_code(int code, const Block_word& word) {
    const M_use use = m_use(code);
    switch (use.effect) {
        case M_effect::holds:
            memory_.set(use.group, word_text(word), code);
            break;
        case M_effect::once:
            break;
        case M_effect::coolant_off:
            memory_.set(Modal::mist, word_text(word), code);
            memory_.set(Modal::flood, word_text(word), code);
            break;
        case M_effect::spindle_and_coolant:
            for (const Modal modal : {Modal::spindle, Modal::flood}) {
                memory_.set(modal, word_text(word), code);
                memory_.doubt(modal, Doubt::maker_differs);
            }
            break;
        case M_effect::tool_change:
            memory_.note_change_by_m6();
            memory_.change_tool();
            break;
        case M_effect::call:
            call(&Program_survey::first_call, Doubt::sub_program);
            break;
        case M_effect::ends:
            memory_.doubt_all(Doubt::program_end);
            break;
        case M_effect::other:
            memory_.note_other(word_text(word));
            break;
    }
}

/// What the control runs elsewhere may leave anything behind.
void Modal_reader::call(std::optional<std::size_t> Program_survey::*first, Doubt why) {
    memory_.note_line(first);
    memory_.doubt_all(why);
}

/// The height of the first rapid move with a new length compensation.
void Modal_reader::keep_clearance(const Block_words& block) {
    if (!clearance_awaited_ || !block['Z'] || axes_ != Axes::positions) {
        return;
    }
    clearance_awaited_ = false;
    const Setting& motion = state()[Modal::motion];
    if (motion.known() && motion.code == 0) {
        memory_.keep_clearance();
    }
}

}  // namespace kelvane
