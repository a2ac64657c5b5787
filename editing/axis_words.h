#pragma once

#include <cstdint>
#include <string_view>

#include "editing/block_words.h"
#include "editing/modal_memory.h"

namespace kelvane {

/// What the axis words of a block stand for.
enum class Axes : std::uint8_t {
    positions,
    nothing,    ///< a dwell, data, arguments of a macro: no axis moves
    reference,  ///< a way to the reference point
    shift,      ///< of the zero point
    unknown,    ///< where makers differ
};

/// Says to `memory` where the axis words of `block` leave the axes, and a cycle that runs there.
void read_axes(const Block_words& block, Axes axes, Machining machining, Modal_memory& memory);

/// G52, G92 and a lathe's G50, written as `g_word`: a shift of the zero point, the greatest speed
/// by S, or both.
void read_shift(const Block_words& block, std::string_view g_word, Modal_memory& memory);

}  // namespace kelvane
