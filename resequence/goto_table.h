#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kelvane {

/// One "GOTO" of a program: what follows the word, digits and blanks as they stand.
struct Goto_target {
    std::size_t position = 0;  ///< where the target begins in the text that was searched
    std::string_view text;     ///< may be empty, as in "GOTO#100"

    [[nodiscard]] std::size_t end() const { return position + text.size(); }
};

/// The next "GOTO" of `text` at or after `from`.
std::optional<Goto_target> find_goto(std::string_view text, std::size_t from);

/// The GOTO targets of a program, each value once, and the numbers their blocks have now. Finding
/// one takes the same time however many there are.
class Goto_table {
  public:
    /// The most targets that a program can have.
    static constexpr std::size_t capacity = 1000;

    /// Takes up a target; one whose value is known already changes nothing. The text must outlive
    /// the table. False when the table is full.
    [[nodiscard]] bool add(std::string_view target);

    /// Notes that the block with this old number is now written with `new_number`. True when some
    /// GOTO leads to it. A value that two blocks carry takes the last one's number.
    bool renumbered(std::string_view old_number, const std::string& new_number);

    /// What a GOTO to `target` is followed by from now on: the new number, with a blank in front
    /// and behind where the target had one. No value when no block carries the number, or when the
    /// target is not a number at all (a computed GOTO).
    [[nodiscard]] std::optional<std::string> replacement(std::string_view target) const;

    [[nodiscard]] bool empty() const { return numbers_.empty(); }

  private:
    std::unordered_map<std::string_view, std::string> numbers_;  ///< empty: no block met so far
};

}  // namespace kelvane
