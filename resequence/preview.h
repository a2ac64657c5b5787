#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "resequence/engine.h"

namespace kelvane {

/// A program this long or shorter is renumbered in full for its preview, in some milliseconds.
inline constexpr std::size_t whole_preview_length = 1'000'000;

/// The first lines of a program as they are and as they would become. Very long ones are cut, with
/// "..." in place of the rest.
struct Resequence_preview {
    std::vector<std::string> before;
    std::vector<std::string> after;
    /// Why the run would end without a result, what would surprise in one, what is not shown: a
    /// line each, with the number of the program's line where it is about one. Empty: nothing.
    std::string note;
};

/// `program_start` is the program, or, when it is longer than `whole_preview_length`, any part from
/// its start that is longer than that; of such a program only the lines shown are renumbered, and
/// GOTOs, whose blocks may be anywhere, are shown as they are.
Resequence_preview preview_resequencing(std::string_view program_start,
                                        const Resequence_options& options);

}  // namespace kelvane
