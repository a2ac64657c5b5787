#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "session/tape_code.h"

namespace kelvane {

/// The tape codes. In EIA track 5, which carries the parity, is bit 4; end of block is track 8.
struct Code_tables {
    /// Character code (row) to the byte sent, by `Tape_code`. A character that a code lacks is 0.
    std::array<std::array<std::uint8_t, tape_code_count>, 256> code_table{};
    /// Received byte (row) to character code, by `Receive_column`. ASCII ignores bit 7, whatever
    /// the parity; EIA is taken with and without its parity track. Where several characters share
    /// one EIA code the highest holds (so "O" for ":", "{" for "]").
    std::array<std::array<std::int16_t, 2>, 256> reverse_code_table{};

    /// The byte that stands for a character in a code; 0 when the code lacks it.
    [[nodiscard]] char sent_byte(char character, Tape_code code) const {
        return static_cast<char>(
            code_table[static_cast<unsigned char>(character)][static_cast<std::size_t>(code)]);
    }
    /// A text in a code, without the characters of `mask`.
    [[nodiscard]] std::string sent_bytes(std::string_view text, Tape_code code,
                                         std::string_view mask = {}) const;
};

/// Builds both tables; done once at start-up.
Code_tables Build_code_tables();

}  // namespace kelvane
