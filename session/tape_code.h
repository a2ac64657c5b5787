#pragma once

#include <cstddef>
#include <string_view>

namespace kelvane {

/// The codes in which a machine reads and punches. The numbers are those of the machines' settings
/// files and the columns of the send table.
enum class Tape_code {
    ascii_even = 0,       ///< ISO 646 in 7 bits, bit 7 makes the number of holes even
    ascii_odd = 1,        ///< the same with odd parity
    ascii_no_parity = 2,  ///< bit 7 always 0
    eia = 3,              ///< EIA RS-244: six tracks, odd parity in track 5
};

inline constexpr std::size_t tape_code_count = 4;

/// The two ways to read what a machine punches, the columns of the receive table: whatever the
/// parity, ASCII is one code.
enum Receive_column : int { receive_ascii = 0, receive_eia = 1 };

/// "ASCII even"
constexpr std::string_view tape_code_name(Tape_code code) {
    constexpr std::string_view names[tape_code_count] = {"ASCII even", "ASCII odd",
                                                         "ASCII no parity", "EIA"};
    return names[static_cast<std::size_t>(code)];
}

/// True for the codes that punch an odd number of holes for every character, so that blank tape is
/// no character of theirs.
constexpr bool has_odd_parity(Tape_code code) {
    return code == Tape_code::ascii_odd || code == Tape_code::eia;
}

}  // namespace kelvane
