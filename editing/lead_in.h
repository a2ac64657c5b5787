#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "editing/start_reading.h"

namespace kelvane {

/// Why a start at the block chosen needs a careful operator.
enum class Start_warning {
    radius_compensation,  ///< cutter radius compensation is on
    cycle,                ///< a canned cycle is on
    contour,              ///< the block belongs to a contour that a lathe's cycle reads
    arc,                  ///< the block is an arc: its start must be met exactly
    incremental,          ///< the block moves by a distance from where the tool stands
    transformed,          ///< coordinates are shifted, turned, scaled, mirrored or polar
    rotary_axis,          ///< a rotary axis was turned before
    position,             ///< where the tool should stand is not known
    jumps,
    variables,
    sub_programs,
    called_files,
    block_skip,    ///< something depends on the machine's switch
    program_end,   ///< a program ends before the block
    unread,        ///< something before the block cannot be read
    other_codes,   ///< codes that only the machine's maker knows
    mill_or_lathe  ///< not clear which it is
};

struct Warning {
    Start_warning kind;
    std::size_t line;  ///< from 0: where the reason stands
};

/// The operator's words, with the line: "Cutter radius compensation is on since line 34."
std::string warning_text(const Warning& warning);

/// What is put in front of the block chosen; the operator reads and edits it before it is sent.
struct Start_proposal {
    std::vector<Warning> warnings;
    /// Blocks without line ends, none for the first line; in the order modes and offset, tool, stop
    /// (M0), spindle, position in two moves, coolant, feed. Nothing moves before the M0. Numbers
    /// are written as the program wrote them. Where something is not known, or where makers differ,
    /// stands a comment in capitals, of characters that every tape code has.
    std::vector<std::string> blocks;
};

/// `reading` must be complete.
Start_proposal propose_start(const Start_reading& reading);

}  // namespace kelvane
