#pragma once

#include <string>
#include <string_view>

#include "session/tape_code.h"

namespace kelvane {

/// What a transfer with the readable-leader option punches around the program.
struct Readable_leader {
    std::string leader;   ///< before all else; bytes as they are, to be sent without parity
    std::string trailer;  ///< in place of the machine's own, to be sent in the machine's code
    std::string tail;     ///< after the trailer; bytes as they are, to be sent without parity
};

/// The leader switches the punch on (DC2) and spells the file's name in holes, so that a person can
/// read it off the tape; the tail ends with punch off (DC4).
///
/// `file` is the program's path; its bare name is spelt, in capitals, with one blank column between
/// two letters unless one of them is blank there itself. Machines with an odd number of holes a
/// character cannot have blank tape next to the program: they get 60
/// characters 32 after the name and after `trailer`, the others 60 blank columns after the name.
[[nodiscard]] Readable_leader readable_leader(std::string_view file, Tape_code tape_code,
                                              std::string_view trailer);

}  // namespace kelvane
