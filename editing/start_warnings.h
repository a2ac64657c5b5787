#pragma once

#include <array>
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
    contour_above,        ///< a cycle reads blocks that are not sent
    half_cycle,           ///< the block may be the second of a lathe's cycle of two
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

/// All that applies to a start as read; `reading` must be complete.
std::vector<Warning> start_warnings(const Start_reading& reading);

/// What moves, turns or scales the coordinates of the program.
inline constexpr std::array<Modal, 6> transformations = {Modal::local_shift, Modal::scaling,
                                                         Modal::mirror,      Modal::rotation,
                                                         Modal::polar,       Modal::interpolation};

}  // namespace kelvane
