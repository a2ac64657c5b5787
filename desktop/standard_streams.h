#pragma once

#include <string_view>

namespace kelvane {

/// To be called before anything else: from now on nothing that the program or a library writes to
/// standard output or error can end, stop or block it, whether the other end is closed, never read,
/// or a terminal that has been halted. A stream that was closed at the start leads nowhere, so that
/// no file or serial line gets its number, and with it the messages. Qt's messages go through
/// `tell_standard_error`.
void guard_standard_streams();

/// Writes `text` to standard error, as far as it is taken at once; the rest is dropped.
void tell_standard_error(std::string_view text);

}  // namespace kelvane
