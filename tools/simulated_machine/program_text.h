#pragma once

#include <string>
#include <string_view>

namespace kelvane::simulated {

/// Puts the characters read from the line together to the text of a program.
class Program_text {
  public:
    /// Blocks end with the given characters; of a CR and LF pair the LF counts. With label skip
    /// everything before the first block that ends in "%" is ignored.
    Program_text(std::string_view end_of_block, bool label_skip);

    /// The next character. Blank tape (0) and everything after the end are ignored.
    void feed(char character);

    /// Whether characters matter at this place of the tape: no label, not behind the end.
    [[nodiscard]] bool significant() const { return !skipping_ && !ended_; }

    /// A "%" outside of a comment came after the first block of the program.
    [[nodiscard]] bool ended() const { return ended_; }

    /// A block with M30 or M02 has come.
    [[nodiscard]] bool program_stop_seen() const { return program_stop_; }

    /// The text so far: lines that end CR LF, no other control characters but TAB.
    [[nodiscard]] std::string text() const { return text_ + printable(block_); }

  private:
    [[nodiscard]] static std::string printable(std::string_view block);
    void watch_for_end(char character);
    void finish_block();

    std::string end_of_block_;
    bool skipping_;
    std::string block_;
    std::string text_;
    bool in_comment_ = false;
    bool begun_ = false;
    bool ended_ = false;
    bool program_stop_ = false;
};

/// Whether a block holds M30 or M02 (or M2) outside of comments.
[[nodiscard]] bool has_program_stop(std::string_view block);

}  // namespace kelvane::simulated
