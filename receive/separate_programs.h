#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

/// The most programs that one reception is split into.
inline constexpr std::size_t most_programs = 500;

/// One program of a received text, with its number (0 when the "O" or ":" has none).
struct Received_program {
    std::int64_t number = 0;
    std::string text;  ///< its lines, each ended by CR LF
};

/// Splits a received text at the lines that begin with "O" or ":". What stands before the first of
/// them is dropped; without any there are no programs. No value when there are more than
/// `most_programs`.
[[nodiscard]] std::optional<std::vector<Received_program>> separate_programs(std::string_view text);

/// Leaves only the last of the programs with one number, in their order.
void keep_last_of_each_number(std::vector<Received_program>& programs);

/// Name of the file of a program: PATH, " O" and the number with a leading blank.
[[nodiscard]] std::string program_file_name(std::string_view path, std::int64_t number);

/// The text's lines, each ended by CR LF, the last one too.
[[nodiscard]] std::string as_complete_lines(std::string_view text);

}  // namespace kelvane
