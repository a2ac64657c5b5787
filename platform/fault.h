#pragma once

#include <optional>
#include <string_view>

namespace kelvane {

/// A limit that was met: tested before anything is stored or sent, and handed up as a value.
enum class Fault {
    subscript_out_of_range,  ///< an index beyond a fixed table (1001st GOTO target, tape code 7)
    overflow,                ///< a count beyond its type's range
    unexpected,              ///< what no routine has foreseen, memory that has run out included
    invalid_argument,        ///< text that cannot be taken at all (a "<18" closed before it opens)
};

/// What a routine with limits returns: empty when all went well.
using Fault_or_ok = std::optional<Fault>;

/// The operator's words for a fault, as a critical box shows them.
std::string_view fault_text(Fault fault);

}  // namespace kelvane
