#pragma once

#include <string>
#include <vector>

#include "editing/start_reading.h"
#include "editing/start_warnings.h"

namespace kelvane {

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
