#pragma once

#include <string>
#include <string_view>

#include "platform/fault.h"
#include "session/tape_code.h"

namespace kelvane {

/// Turns the readable notation of control characters in a settings text into the characters: "LF",
/// "CR" (a line feed in EIA, which has no carriage return), "ESC" and "NUL", case
/// counts; then every group "<n>" into the character of decimal code n, 0..255. The groups are
/// taken by the first "<" and the first ">" of the text; a "<" without any ">" stays. A ">" before
/// the first "<", or a code beyond a byte, is a fault and leaves `result` alone.
[[nodiscard]] Fault_or_ok parsit(std::string_view text, Tape_code tape_code, std::string& result);

}  // namespace kelvane
