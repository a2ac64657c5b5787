#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/modal_codes.h"

namespace kelvane {

/// Why a value cannot be relied on though the program has set it.
enum class Doubt : std::uint8_t {
    none,
    incremental,     ///< the axis has moved by a distance since
    distance,        ///< whether the number is a place or a distance is not known
    variable,        ///< the value comes from a variable or an expression
    sub_program,     ///< a sub-program or a macro has run since
    called_file,     ///< another file has run since
    jump,            ///< the control may have come here from elsewhere
    block_skip,      ///< depends on the block skip switch
    condition,       ///< stands behind an IF
    reference,       ///< the axis has gone to a place of the machine
    tool_change,     ///< a tool change may have altered it
    offset_change,   ///< the number counts from another zero point now
    transformation,  ///< the coordinates are turned, scaled, mirrored or polar
    cycle,           ///< a cycle has moved the axis
    program_end,     ///< a program has ended since
    maker_differs,   ///< makers give the code different meanings
    unread,          ///< something has come since that this reader does not know
};

/// The operator's words for a doubt: "a sub-program has run"; empty for `none`.
std::string_view doubt_text(Doubt doubt);

/// One value of the modal state.
struct Setting {
    std::string word;  ///< as the program wrote it, in capitals: "G01", "X-1.5", "G54.1 P2"; empty:
                       ///< not set before
    int code = -1;     ///< tenths of a G code, or the M code; -1: neither
    std::size_t line = 0;  ///< from 0, that set it
    Doubt doubt = Doubt::none;
    std::size_t doubt_line = 0;  ///< from 0, that made it doubtful

    [[nodiscard]] bool known() const { return !word.empty() && doubt == Doubt::none; }
};

/// The operator's words: "G54, line 15", "G54, line 15, but a sub-program has run, line 20", "not
/// set before".
std::string setting_text(const Setting& setting);

/// A code that only the machine's maker knows.
struct Other_code {
    std::string word;
    std::size_t line;  ///< of its last use
};

/// What a control that has run all blocks before a line remembers, as far as the text tells.
struct Modal_state {
    std::array<Setting, modal_count> settings;
    /// Height to which the tool went when its length compensation was switched on, as a word.
    Setting clearance;
    std::vector<Other_code> others;  ///< at most `max_others`, in the order of their first use
    std::optional<std::size_t> tool_change;  ///< line of the last one
    bool unknown_code = false;               ///< a G code has come that the table lacks
    /// A number has been given that no code takes: some controls take it as the tool's length.
    bool lone_number = false;
    bool in_contour = false;  ///< in the blocks that a lathe's G71, G72 or G73 names with P and Q
    /// The block read last was a lathe's contour cycle, perhaps the first of its two blocks.
    bool after_contour_cycle = false;

    static constexpr std::size_t max_others = 16;

    [[nodiscard]] const Setting& operator[](Modal modal) const {
        return settings[static_cast<std::size_t>(modal)];
    }
    /// True when a group's code is set, doubtful or not, and does not end the group's effect.
    [[nodiscard]] bool active(Modal group) const;
    /// True when a group's last code switches its effect on, whatever may have come since.
    [[nodiscard]] bool on(Modal group) const;
};

/// Why the number of an axis word in the next block may not be where the axis goes to.
[[nodiscard]] Doubt position_doubt(const Modal_state& state, Machining machining);

}  // namespace kelvane
