#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

/// A line that stands for all lines of another file.
struct Sub_call {
    std::string name;  ///< the file as the line names it, never empty
    int repeats = 1;   ///< 1..max_sub_repeats; 0: the line holds a count that is none of these

    bool operator==(const Sub_call&) const = default;
};

inline constexpr int max_sub_repeats = 9'999'999;

/// Reads `line` as a call of a sub-file; no value for every other line, which is program text.
///
///     [/] [N10] [/] CALL name [(3 TIMES)] [(comment)]
///
/// "CALL " is in capitals and stands first, behind a block number and block-skip slashes at most;
/// those are not sent, as nothing of a call is. The name may hold blanks and may stand in double
/// quotes; it ends where the brackets at the line's end begin. "(TIMES 3)" says the same as
/// "(3 TIMES)".
///
/// A "CALL " in any other place is left to the machine: comments ("(CALL THE FOREMAN)"), and the
/// statements of controls that have a call of their own ("TOOL CALL 5", "CYCL CALL", "M98 CALL 7",
/// "CALL LBL 3", "CALL PGM 12"). What does begin like a call is never sent as text: a count that
/// cannot be read or words too many (which make a name that no file has) are for the caller to
/// refuse, because a call that slips through leaves out an operation of the part.
[[nodiscard]] std::optional<Sub_call> parse_sub_call(std::string_view line);

/// True when a line of a called file is left out: one that ends the program (M02, M2 or M30 as a
/// word outside brackets, so neither "M300" nor "(NO M30 HERE)"), and a tape mark, which is a "%"
/// alone on its line: either would end the whole program in its middle.
[[nodiscard]] bool left_out_of_sub_file(std::string_view line);

}  // namespace kelvane
