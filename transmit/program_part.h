#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kelvane {

/// A program sent from a block in its middle: the operator's lead-in, then all lines from that
/// block on.
struct Program_part {
    /// What is sent in the file's place, as the operator has seen it. Files that it calls are
    /// looked for as those of the whole program are.
    std::string content;
    std::size_t lead_in_lines = 0;  ///< of `content`, before the program's own
    std::size_t first_line = 0;     ///< of the program, from 0: the one behind the lead-in

    /// Lines of the program of which `content` with its `lines` is the end.
    [[nodiscard]] std::size_t program_lines(std::size_t lines) const {
        return first_line + lines - lead_in_lines;
    }
    /// The program's line, from 1, that is line `line`, from 1, of `content`; none in the lead-in.
    [[nodiscard]] std::optional<std::size_t> program_line(std::size_t line) const {
        return line > lead_in_lines ? std::optional(first_line + line - lead_in_lines)
                                    : std::nullopt;
    }
};

}  // namespace kelvane
