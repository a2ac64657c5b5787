#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "receive/received_code.h"
#include "receive/received_text.h"
#include "transmit/code_tables.h"

namespace kelvane {

/// What may be wrong with a received text although it was saved: the line of the text, from 1, of
/// each doubtful character, ascending.
struct Reception_doubts {
    std::vector<std::size_t> wrong_parity;
    /// Bytes that are always removed, but stand for a printable character in this tape code.
    std::vector<std::size_t> removed;
    std::string removed_characters;  ///< each once
};

/// Looks through `raw` as it is converted. Parity is the one, even or odd (EIA: odd), that most of
/// the characters follow. Data without parity, in which the parity bit is hardly ever set, cannot
/// have a wrong one. Blank tape, rub-outs and DC1 to DC4, which many machines send in a parity of
/// their own, do not count.
[[nodiscard]] Reception_doubts doubts_of(std::string_view raw, const Code_tables& tables,
                                         const Received_code& code,
                                         const Conversion_options& options);

/// The first `count` lines of the text have been taken away.
void drop_lines(Reception_doubts& doubts, std::size_t count);

/// "3 characters had wrong parity: lines 2, 17, 40", and a line for what was removed; empty without
/// doubts.
[[nodiscard]] std::string doubts_text(const Reception_doubts& doubts);

}  // namespace kelvane
