#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "editing/find.h"

namespace kelvane {

/// What the operator wrote into "Go to": "120" is a line, "N120" a block.
struct Go_to {
    std::size_t line = 0;  ///< from 0; of no meaning for a block
    std::string block;     ///< the N number as written; empty for a line
};

/// No value for what is neither; a line number of 0 is neither.
std::optional<Go_to> parse_go_to(std::string_view text);

/// Looks for the block with an N number, leading zeros and "/" in front disregarded. Numbers may
/// stand in a program more than once: the first one behind the line at which the search begins is
/// found, then those from the start of the program.
class Find_block {
  public:
    /// `from` is the offset of a line's first byte, `from_line` its number.
    Find_block(std::string number, std::size_t from, std::size_t from_line);

    /// Looks at `budget` bytes and the rest of the line where they end.
    Search_state step(std::string_view text, std::size_t budget = std::string_view::npos);
    /// Offset of the first byte of the block found, and its line from 0.
    [[nodiscard]] std::size_t found_at() const { return place_; }
    [[nodiscard]] std::size_t found_line() const { return line_; }

  private:
    std::string number_;
    std::size_t from_, place_, line_;
    bool wrapped_ = false;
    bool past_first_ = false;  ///< the line at which the search begins is looked at last
};

}  // namespace kelvane
