#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvane::simulated {

/// How characters stand on the line: seven-bit ASCII with bit 7 as parity, or EIA RS-244.
enum class Tape_code { even, odd, none, eia };

/// Device control characters, by their seven-bit ASCII value.
enum class Control : std::uint8_t { xon = 17, punch_on = 18, xoff = 19, punch_off = 20 };

/// The byte punched for a character; 0 (blank tape) for one that the code cannot carry. Lower-case
/// letters become capitals in EIA.
[[nodiscard]] std::uint8_t encode(char character, Tape_code code);
[[nodiscard]] std::string encode(std::string_view text, Tape_code code);

/// The character of a byte: 0 for blank tape, '?' for an EIA byte without a character. The EIA end
/// of block gives LF. The parity is not looked at.
[[nodiscard]] char decode(std::uint8_t byte, Tape_code code);

/// Whether the byte has the parity of the code. Blank tape always has; without parity all have.
[[nodiscard]] bool parity_good(std::uint8_t byte, Tape_code code);

/// A device control character as the machine sends it; EIA machines use the even-parity form.
[[nodiscard]] std::uint8_t control_byte(Control control, Tape_code code);

/// Whether a byte from the partner is this control character, with or without a parity bit.
[[nodiscard]] bool is_control(std::uint8_t byte, Control control);

}  // namespace kelvane::simulated
