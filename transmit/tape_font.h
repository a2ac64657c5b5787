#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace kelvane {

/// "." to "\" in the order of their codes, then "-" and "_".
inline constexpr std::size_t tape_font_size = 49;

/// A letter as holes across the tape: one byte a column, from left to right, bit 0 at the bottom
/// edge and bit 6 at the top. Bit 7 is never used, so that a glyph passes a 7-bit code unchanged.
struct Tape_glyph {
    std::array<char, 6> columns{};
    std::size_t width = 0;

    [[nodiscard]] std::string_view bytes() const { return {columns.data(), width}; }
};

/// The font, drawn in marks in `tape_font.cpp`. A control that reads the tape takes letters for
/// characters, so no letter has a column that means something to it: LF, CR, "%", the device
/// controls 17..20, or the "%" of EIA code.
[[nodiscard]] const std::array<Tape_glyph, tape_font_size>& tape_font();

/// The glyph of `character`, five blank columns for every character that the font lacks. There are
/// no small letters.
[[nodiscard]] const Tape_glyph& tape_glyph(char character);

}  // namespace kelvane
