#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

struct Resequence_options;

/// One line of a program, taken apart. The views point into the line; put together again they are
/// the line.
struct Block {
    std::string_view prefix;      ///< block delete: "/" and its level digit; usually empty
    std::string_view letter;      ///< what stands for "N" on this line; empty without an old number
    std::string_view old_number;  ///< the digits, points and blanks after the letter
    std::string_view rest;        ///< the words of the block
    bool keeps_letter = false;    ///< an "O" that stays "O" when the block gets its new number
};

/// Takes a line apart. A letter counts as an old number's also when no digit follows it.
Block split_block(std::string_view line, const Resequence_options& options);

/// The value of the leading number in `text` as its decimal digits without leading zeros (0 gives
/// an empty view), so that equal values are equal texts however long they are. No value when there
/// is no digit, or when the number has a fraction: such a number is nobody's GOTO target.
std::optional<std::string_view> whole_value(std::string_view text);

/// The N number of the next block.
class Block_numbers {
  public:
    /// `options` must outlive the numbers.
    explicit Block_numbers(const Resequence_options& options);

    /// The number as it is written after the letter: with its decimal point, leading zeros and
    /// added blank as the options want them. Valid until the next call.
    [[nodiscard]] const std::string& text();

    /// On to the next number, or back to the start beyond the maximum. False when the numbers have
    /// become too great to count (beyond 15 digits).
    [[nodiscard]] bool advance();

  private:
    const Resequence_options& options_;
    std::int64_t number_;
    std::string text_;
};

/// Follows comments in square brackets from line to line.
class Bracket_comment {
  public:
    /// True when a line with these words belongs to a comment: from a line that begins with "["
    /// up to one that ends with "]", both included.
    [[nodiscard]] bool covers(std::string_view words);
    /// True when the comment goes on after the line that was asked for last.
    [[nodiscard]] bool open() const { return open_; }

  private:
    bool open_ = false;
};

/// True when the words hold a "W" (the Cincinnati ram axis) outside their first comment.
bool moves_w(std::string_view words);

}  // namespace kelvane
