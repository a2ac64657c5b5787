#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace kelvane {

/// What a control remembers from block to block. Of each at most one value holds.
enum class Modal : std::uint8_t {
    motion,         ///< G0 to G3, threading
    cycle,          ///< canned cycles; G80 or a motion ends them
    plane,          ///< G17 to G19
    units,          ///< inch or metric
    distance,       ///< absolute or incremental
    feed_mode,      ///< per minute, per turn, inverse time
    work_offset,    ///< G54 to G59 and their extensions
    local_shift,    ///< G52, G92: the coordinates moved once more
    radius_comp,    ///< G40 to G42
    length_comp,    ///< G43, G44, G49
    cycle_return,   ///< G98, G99 of milling cycles
    speed_mode,     ///< G96 constant surface speed, G97 turns per minute
    path_mode,      ///< exact stop, continuous path, look-ahead
    scaling,        ///< G50, G51
    mirror,         ///< G50.1, G51.1
    rotation,       ///< G68, G69
    polar,          ///< G15, G16
    interpolation,  ///< on a face or a cylinder: G12.1, G7.1
    macro_call,     ///< G66: a macro after every move
    radius_number,  ///< D
    length_number,  ///< H
    feed,           ///< F
    speed,          ///< S
    speed_limit,    ///< S of G50 or G92
    tool,           ///< in use
    next_tool,      ///< the last T, perhaps only made ready
    spindle,        ///< M3, M4, M5, M19
    mist,           ///< M7, M9
    flood,          ///< M8, M9
    x,
    y,
    z,
    a,
    b,
    c,
};
inline constexpr std::size_t modal_count = 35;

/// The axes with their letters.
inline constexpr std::array<std::pair<char, Modal>, 6> axis_letters = {{{'X', Modal::x},
                                                                        {'Y', Modal::y},
                                                                        {'Z', Modal::z},
                                                                        {'A', Modal::a},
                                                                        {'B', Modal::b},
                                                                        {'C', Modal::c}}};

inline constexpr std::array<Modal, 3> rotary_axes = {Modal::a, Modal::b, Modal::c};

/// The operator's name of it: "Plane", "Work offset", "X".
std::string_view modal_name(Modal modal);

/// Controls give some codes another meaning on lathes (G90, G92, G94, G98, G99, G70 to G76).
enum class Machining : std::uint8_t {
    milling,
    turning,  ///< the most common set of lathe codes: U and W are the incremental X and Z
};

enum class G_effect : std::uint8_t {
    holds,         ///< becomes the value of its group
    once,          ///< tells nothing about later blocks
    no_axes,       ///< the block's axis words are no positions: dwell
    data,          ///< the same, and offsets may have been rewritten
    reference,     ///< the axes named leave for a place of the machine
    shift,         ///< moves the coordinates
    contour,       ///< a lathe's cycle over a contour, which comes back to where it began
    call,          ///< runs a macro
    noted,         ///< alters neither place nor motion, but does not come back by itself
    maker_differs  ///< not in the table, or not the same on all controls
};

/// One code's meaning. `group` counts with `holds` only.
struct G_use {
    G_effect effect = G_effect::maker_differs;
    Modal group = Modal::motion;
    bool certain = true;  ///< false: a group's value that not all controls take so
};

enum class M_effect : std::uint8_t {
    holds,
    once,
    coolant_off,
    spindle_and_coolant,  ///< both at once, as most makers have it
    tool_change,
    call,   ///< of a sub-program
    ends,   ///< the program or the sub-program
    other,  ///< known to the machine's maker
};

struct M_use {
    M_effect effect = M_effect::other;
    Modal group = Modal::spindle;  ///< with `holds` only
};

/// What a word of two letters or more does.
enum class Statement_effect : std::uint8_t {
    jump,       ///< the next block may be another one: GOTO, WHILE, ELSE
    condition,  ///< IF: a jump, but with THEN behind it only what stands there may be left out
    call,       ///< of a file
    harmless,   ///< changes nothing that a control remembers
    unread,     ///< not in the table
};

/// Tenths of a G word's number as written: "01" is 10, "54.1" 541. No value for what is no code.
std::optional<int> g_code(std::string_view number);
/// The number of an M word, from 0.
std::optional<int> m_code(std::string_view number);

/// What a code means; `tenths` as from `g_code`.
G_use g_use(int tenths, Machining machining);
M_use m_use(int code);
/// `name` in capitals, without what stands behind it.
Statement_effect statement_effect(std::string_view name);

/// True for codes that may have a P of their own; `code` as in `Setting`.
bool takes_p(G_use use, int code);
bool takes_p(M_use use);

/// Stands for a local shift of zero on all axes that had one.
inline constexpr int no_shift = 0;

/// True for the code (as in `Setting`) that ends a group's effect: G40, G49, G80, M9 and their
/// like.
bool is_off_code(Modal group, int code);

}  // namespace kelvane
