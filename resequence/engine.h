#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/fault.h"
#include "platform/task.h"

namespace kelvane {

/// Leading zeros never make a number longer than this, whatever the options ask for.
inline constexpr int most_digits = 64;

/// How a program's blocks are to be numbered.
struct Resequence_options {
    std::int64_t start = 10;        ///< the first number
    std::int64_t increment = 10;    ///< from one number to the next
    std::int64_t maximum = 0;       ///< beyond it the numbers begin at `start` again; 0: none
    bool leading_zeros = false;     ///< numbers are filled up with zeros to `digits`
    int digits = 3;                 ///< 0..`most_digits`
    bool add_space = false;         ///< a blank after the number
    bool decimal_numbers = false;   ///< Dynapath: thousandths, 10 is written ".010"
    std::string n_character = "N";  ///< what is written in front of a number; may be empty
    bool n_lines_only = false;      ///< only lines that have an N number already
    bool t_lines_only = false;      ///< only lines that hold a "T"
    bool skip_id_lines = false;     ///< "%", ":" and a short "L" line at the top stay as they are
    bool blank_lines = false;       ///< empty lines get a number, too
    bool comments = false;          ///< lines that begin with "(" get one
    bool bracket_comments = false;  ///< lines within [ ] get one
    bool gotos = false;             ///< GOTO targets follow their blocks; excludes a maximum
    bool o_same_as_n = false;       ///< "O" is a number's letter as well, and stays one
    bool h_with_w = false;          ///< Cincinnati: "H" instead of "N" on lines that move W
    std::string add_to;             ///< put at the end of every line

    /// Both are wanted, which cannot be: a GOTO to a number that repeats leads nowhere for sure.
    [[nodiscard]] bool maximum_with_gotos() const { return gotos && maximum != 0; }
};

/// The renumbered program; lines end with CR LF.
struct Resequenced {
    std::string text;
    /// The line, from 1, of a "[" that is never closed, so that no line after it has got a number;
    /// 0: none.
    std::int64_t open_bracket_line = 0;
};

/// A GOTO whose block does not exist, or that computes its target.
struct Unresolved_goto {
    std::string target;        ///< what follows the GOTO, blanks included
    bool at_line_end = false;  ///< nothing but the target stands between the GOTO and the line end
    std::int64_t line = 0;     ///< where it stands, from 1
};

/// `Resequence_progress` asked for the end.
struct Resequence_cancelled {};

/// `Resequence_options::maximum_with_gotos`.
struct Maximum_with_gotos {};

/// How a resequencing ends. The faults are `subscript_out_of_range` (more than 1000 different GOTO
/// targets) and `overflow` (numbers beyond 15 digits).
using Resequence_result =
    std::variant<Resequenced, Unresolved_goto, Fault, Resequence_cancelled, Maximum_with_gotos>;

/// Awaited before every few hundred lines of each pass, with the part of the program that has been
/// renumbered, in percent (0..99). False ends the work.
using Resequence_progress = std::function<Task<bool>(int percent)>;

/// Renumbers a program (bytes; see `Lines` for what ends a line, and an end-of-file mark is
/// dropped). Takes time and memory in proportion to the text, up to three times its size beside it.
Resequence_result resequence(std::string_view text, const Resequence_options& options);

/// The same as long work. `text` must outlive it.
Task<Resequence_result> resequence(std::string_view text, Resequence_options options,
                                   Resequence_progress progress);

}  // namespace kelvane
