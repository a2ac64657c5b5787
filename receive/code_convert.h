#pragma once

#include <functional>
#include <optional>
#include <string>
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

/// What a conversion drops.
struct Conversion_options {
    bool ignore_before = false;  ///< what stands before the first end of block
    bool ignore_after = false;   ///< what stands after the last one
    std::string_view unwanted;   ///< raw bytes
    std::string_view mask;       ///< converted characters
};

/// Turns raw bytes into text with lines that end in CR LF. `yield` is called after every hundred
/// bytes.
[[nodiscard]] std::string convert_received(std::string_view raw, const Code_tables& tables,
                                           const Received_code& code,
                                           const Conversion_options& options,
                                           const std::function<void()>& yield);

/// `text` without everything up to and including the first `mark`; unchanged when the mark is empty
/// or does not occur.
[[nodiscard]] std::string_view skipped_up_to(std::string_view text, std::string_view mark);

}  // namespace kelvane
