#include "editing/modal_codes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr std::array<std::string_view, modal_count> names = {"Motion",
                                                             "Cycle",
                                                             "Plane",
                                                             "Inch or metric",
                                                             "Absolute or incremental",
                                                             "Feed mode",
                                                             "Work offset",
                                                             "Local shift",
                                                             "Cutter radius",
                                                             "Tool length",
                                                             "Cycle return",
                                                             "Speed mode",
                                                             "Path mode",
                                                             "Scaling",
                                                             "Mirror",
                                                             "Rotation",
                                                             "Polar",
                                                             "Interpolation",
                                                             "Macro call",
                                                             "Radius number",
                                                             "Length number",
                                                             "Feed",
                                                             "Speed",
                                                             "Speed limit",
                                                             "Tool",
                                                             "Last T",
                                                             "Spindle",
                                                             "Mist coolant",
                                                             "Flood coolant",
                                                             "X",
                                                             "Y",
                                                             "Z",
                                                             "A",
                                                             "B",
                                                             "C"};

constexpr G_use holds(Modal group) {
    return {G_effect::holds, group, true};
}

constexpr G_use holds_on_some(Modal group) {
    return {G_effect::holds, group, false};
}

constexpr G_use does(G_effect effect) {
    return {effect, Modal::motion, true};
}

constexpr G_use differs = {};

struct G_row {
    int tenths;
    G_use milling, turning;
};

constexpr G_row both(int tenths, G_use use) {
    return {tenths, use, use};
}

/// The one table of G codes. A number that it lacks is left to the machine's maker.
constexpr G_row g_table[] = {
    both(0, holds(Modal::motion)),
    both(10, holds(Modal::motion)),
    both(20, holds(Modal::motion)),
    both(30, holds(Modal::motion)),
    both(40, does(G_effect::no_axes)),
    both(50, holds_on_some(Modal::path_mode)),
    both(51, holds_on_some(Modal::path_mode)),
    both(71, holds_on_some(Modal::interpolation)),
    both(80, holds_on_some(Modal::path_mode)),
    both(90, does(G_effect::once)),
    both(100, does(G_effect::data)),
    both(110, does(G_effect::data)),
    both(121, holds(Modal::interpolation)),
    both(131, holds(Modal::interpolation)),
    {150, holds(Modal::polar), differs},
    {160, holds(Modal::polar), differs},
    both(170, holds(Modal::plane)),
    both(180, holds(Modal::plane)),
    both(190, holds(Modal::plane)),
    both(200, holds(Modal::units)),
    both(210, holds(Modal::units)),
    both(220, does(G_effect::no_axes)),
    both(230, does(G_effect::no_axes)),
    both(270, does(G_effect::reference)),
    both(280, does(G_effect::reference)),
    both(290, does(G_effect::reference)),
    both(300, does(G_effect::reference)),
    both(310, does(G_effect::reference)),
    {320, differs, holds(Modal::motion)},
    both(330, holds(Modal::motion)),
    {340, differs, holds(Modal::motion)},
    both(400, holds(Modal::radius_comp)),
    both(410, holds(Modal::radius_comp)),
    both(420, holds(Modal::radius_comp)),
    {430, holds(Modal::length_comp), differs},
    {434, holds_on_some(Modal::length_comp), differs},
    {435, holds_on_some(Modal::length_comp), differs},
    {440, holds(Modal::length_comp), differs},
    {490, holds(Modal::length_comp), differs},
    {500, holds(Modal::scaling), does(G_effect::shift)},
    {510, holds(Modal::scaling), differs},
    {501, holds(Modal::mirror), differs},
    {511, holds(Modal::mirror), differs},
    both(520, does(G_effect::shift)),
    both(530, does(G_effect::reference)),
    both(540, holds(Modal::work_offset)),
    both(541, holds_on_some(Modal::work_offset)),
    both(550, holds(Modal::work_offset)),
    both(560, holds(Modal::work_offset)),
    both(570, holds(Modal::work_offset)),
    both(580, holds(Modal::work_offset)),
    both(590, holds(Modal::work_offset)),
    both(591, holds_on_some(Modal::work_offset)),
    both(592, holds_on_some(Modal::work_offset)),
    both(593, holds_on_some(Modal::work_offset)),
    both(610, holds(Modal::path_mode)),
    both(620, holds(Modal::path_mode)),
    both(630, holds(Modal::path_mode)),
    both(640, holds(Modal::path_mode)),
    both(650, does(G_effect::call)),
    both(660, holds(Modal::macro_call)),
    both(661, holds(Modal::macro_call)),
    both(670, holds(Modal::macro_call)),
    both(680, holds(Modal::rotation)),
    both(682, holds_on_some(Modal::rotation)),
    both(690, holds(Modal::rotation)),
    {700, holds_on_some(Modal::units), does(G_effect::contour)},
    {710, holds_on_some(Modal::units), does(G_effect::contour)},
    {720, differs, does(G_effect::contour)},
    {730, holds(Modal::cycle), does(G_effect::contour)},
    {740, holds(Modal::cycle), does(G_effect::contour)},
    {750, differs, does(G_effect::contour)},
    {760, holds(Modal::cycle), does(G_effect::contour)},
    both(800, holds(Modal::cycle)),
    both(810, holds(Modal::cycle)),
    both(820, holds(Modal::cycle)),
    both(830, holds(Modal::cycle)),
    both(840, holds(Modal::cycle)),
    both(850, holds(Modal::cycle)),
    both(860, holds(Modal::cycle)),
    both(870, holds(Modal::cycle)),
    both(880, holds(Modal::cycle)),
    both(890, holds(Modal::cycle)),
    {900, holds(Modal::distance), holds(Modal::cycle)},
    both(901, does(G_effect::noted)),
    both(910, holds(Modal::distance)),
    both(911, does(G_effect::noted)),
    {920, does(G_effect::shift), holds(Modal::cycle)},
    {930, holds(Modal::feed_mode), differs},
    {940, holds(Modal::feed_mode), holds(Modal::cycle)},
    both(950, holds(Modal::feed_mode)),
    both(960, holds(Modal::speed_mode)),
    both(970, holds(Modal::speed_mode)),
    {980, holds(Modal::cycle_return), holds(Modal::feed_mode)},
    {990, holds(Modal::cycle_return), holds(Modal::feed_mode)},
    {1030, does(G_effect::noted), differs},
    both(1540, holds_on_some(Modal::work_offset)),
    {1870, does(G_effect::noted), differs},
};

struct M_row {
    int code;
    M_use use;
};

constexpr M_row m_table[] = {
    {0, {M_effect::once, {}}},
    {1, {M_effect::once, {}}},
    {2, {M_effect::ends, {}}},
    {3, {M_effect::holds, Modal::spindle}},
    {4, {M_effect::holds, Modal::spindle}},
    {5, {M_effect::holds, Modal::spindle}},
    {6, {M_effect::tool_change, {}}},
    {7, {M_effect::holds, Modal::mist}},
    {8, {M_effect::holds, Modal::flood}},
    {9, {M_effect::coolant_off, {}}},
    {13, {M_effect::spindle_and_coolant, {}}},
    {14, {M_effect::spindle_and_coolant, {}}},
    {17, {M_effect::ends, {}}},
    {19, {M_effect::holds, Modal::spindle}},
    {30, {M_effect::ends, {}}},
    {97, {M_effect::call, {}}},
    {98, {M_effect::call, {}}},
    {99, {M_effect::ends, {}}},
    {198, {M_effect::call, {}}},
};

struct Off_code {
    Modal group;
    int code;
};

constexpr Off_code off_codes[] = {
    {Modal::local_shift, no_shift},
    {Modal::cycle, 800},
    {Modal::radius_comp, 400},
    {Modal::length_comp, 490},
    {Modal::scaling, 500},
    {Modal::mirror, 501},
    {Modal::rotation, 690},
    {Modal::spindle, 5},
    {Modal::mist, 9},
    {Modal::flood, 9},
    {Modal::polar, 150},
    {Modal::macro_call, 670},
    {Modal::interpolation, 131},
};

struct Statement {
    std::string_view name;
    Statement_effect effect;
};

constexpr Statement statements[] = {
    {"CALL", Statement_effect::call},      {"IF", Statement_effect::condition},
    {"GOTO", Statement_effect::jump},      {"GOTOF", Statement_effect::jump},
    {"GOTOB", Statement_effect::jump},     {"GOTOC", Statement_effect::jump},
    {"WHILE", Statement_effect::jump},     {"DO", Statement_effect::jump},
    {"END", Statement_effect::jump},       {"REPEAT", Statement_effect::jump},
    {"UNTIL", Statement_effect::jump},     {"LOOP", Statement_effect::jump},
    {"FOR", Statement_effect::jump},       {"ELSE", Statement_effect::jump},
    {"ENDIF", Statement_effect::jump},     {"CASE", Statement_effect::jump},
    {"ENDW", Statement_effect::jump},      {"ENDFOR", Statement_effect::jump},
    {"ENDLOOP", Statement_effect::jump},   {"THEN", Statement_effect::harmless},
    {"POPEN", Statement_effect::harmless}, {"PCLOS", Statement_effect::harmless},
    {"DPRNT", Statement_effect::harmless}, {"BPRNT", Statement_effect::harmless},
    {"SETVN", Statement_effect::harmless}, {"MSG", Statement_effect::harmless},
};

std::optional<int> whole(std::string_view digits) {
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const bool all = error == std::errc() && end == digits.data() + digits.size();
    return all && value >= 0 && value < 100'000 ? std::optional(value) : std::nullopt;
}

}  // namespace

std::string_view modal_name(Modal modal) {
    return names[static_cast<std::size_t>(modal)];
}

std::optional<int> g_code(std::string_view number) {
    const std::size_t point = std::min(number.find('.'), number.size());
    const auto front = whole(number.substr(0, point));
    std::string_view fraction = number.substr(std::min(point + 1, number.size()));
    fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
    if (!front || fraction.size() > 1 || (!fraction.empty() && !is_digit(fraction[0]))) {
        return std::nullopt;
    }
    return *front * 10 + (fraction.empty() ? 0 : fraction[0] - '0');
}

std::optional<int> m_code(std::string_view number) {
    return whole(number);
}

G_use g_use(int tenths, Machining machining) {
    const auto* const row =
        std::find_if(std::begin(g_table), std::end(g_table),
                     [tenths](const G_row& candidate) { return candidate.tenths == tenths; });
    if (row == std::end(g_table)) {
        return differs;
    }
    return machining == Machining::milling ? row->milling : row->turning;
}

M_use m_use(int code) {
    const auto* const row = std::find_if(std::begin(m_table), std::end(m_table),
                                         [code](const M_row& m) { return m.code == code; });
    return row == std::end(m_table) ? M_use{} : row->use;
}

Statement_effect statement_effect(std::string_view name) {
    const auto* const row = std::find_if(std::begin(statements), std::end(statements),
                                         [name](const Statement& s) { return s.name == name; });
    return row == std::end(statements) ? Statement_effect::unread : row->effect;
}

bool takes_p(G_use use, int code) {
    const bool holds = use.effect == G_effect::holds;
    return !holds || (use.group == Modal::cycle && !is_off_code(use.group, code));
}

bool takes_p(M_use use) {
    return use.effect == M_effect::call || use.effect == M_effect::ends ||
           use.effect == M_effect::other;
}

bool is_off_code(Modal group, int code) {
    return std::any_of(std::begin(off_codes), std::end(off_codes),
                       [=](const Off_code& off) { return off.group == group && off.code == code; });
}

}  // namespace kelvane
