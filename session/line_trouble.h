#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/event_loop.h"
#include "platform/serial_port.h"

namespace kelvane {

/// What the errors on a line in a transfer mean and what can be done, in sentences for the operator
/// with a line feed between them: "212 of 3,400 characters came with framing errors: the baud rate
/// is wrong". `characters` have come in, discarded ones included. Empty without errors.
[[nodiscard]] std::string line_errors_text(const Line_errors& errors, std::size_t characters);

/// What it means that nothing but NULs comes in.
inline constexpr std::string_view only_nulls =
    "Only NULs came: the machine's baud rate is lower than the one set here, or it sent nothing "
    "but "
    "a leader";

/// What is known of a reception in which no text was found.
struct Unknown_reception {
    std::string_view bytes;  ///< as they came, NULs included if they were kept
    Line_errors errors;
    Clock_time span{};                 ///< from the first to the last character
    double characters_per_second = 0;  ///< that the line could have carried
};

/// The likeliest cause of it in one sentence or, with errors on the line, more.
[[nodiscard]] std::string likeliest_cause(const Unknown_reception& reception);

}  // namespace kelvane
