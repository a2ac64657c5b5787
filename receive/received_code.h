#pragma once

#include <optional>
#include <string_view>

#include "transmit/code_tables.h"

namespace kelvane {

/// The tape code of received data: which column of the received-byte table, and which raw byte ends
/// a block.
struct Received_code {
    Receive_column column = receive_ascii;
    unsigned char end_of_block = '\n';
};

/// How many bytes from the start the recognition looks at.
inline constexpr std::size_t recognition_sample = 2048;

/// Recognises the code by the first byte that decides: a line end in any parity is ASCII, a byte of
/// 128 (EIA end of block) is EIA, unless the sample holds a run of fifty of them, which is blank
/// leader with track 8 only. No value when nothing in the sample decides.
[[nodiscard]] std::optional<Received_code> recognise_code(std::string_view sample);

}  // namespace kelvane
