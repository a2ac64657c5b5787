#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "receive/received_code.h"
#include "transmit/code_tables.h"

namespace kelvane {

/// What a conversion drops.
struct Conversion_options {
    bool ignore_before = false;  ///< what stands before the first end of block
    bool ignore_after = false;   ///< what stands after the last one
    std::string_view unwanted;   ///< raw bytes
    std::string_view mask;       ///< converted characters
};

/// Turns raw bytes into text with lines that end in CR LF, a part at a time.
class Received_text {
  public:
    /// Of `raw`, which outlives the conversion.
    Received_text(std::string_view raw, const Code_tables& tables, const Received_code& code,
                  const Conversion_options& options);

    [[nodiscard]] bool at_end() const { return taken_ == raw_.size(); }
    /// Converts the next `count` bytes, or what is left.
    void take(std::size_t count);
    /// The text of all that has been taken; once.
    [[nodiscard]] std::string finish();

  private:
    /// What becomes of a raw byte: a character, or one of these.
    static constexpr std::int16_t dropped = -1;
    static constexpr std::int16_t ends_block = -2;

    void take_part(std::string_view part);
    char* end_line(char* buffer, char* out);

    std::string_view raw_;
    std::size_t taken_ = 0;
    std::array<std::int16_t, 256> actions_{};
    std::string text_;
    std::size_t line_start_ = 0;  ///< in `text_`
    bool drops_next_;
    bool drops_unfinished_;
};

/// `text` without everything up to and including the first `mark`; unchanged when the mark is empty
/// or does not occur.
[[nodiscard]] std::string_view skipped_up_to(std::string_view text, std::string_view mark);

}  // namespace kelvane
