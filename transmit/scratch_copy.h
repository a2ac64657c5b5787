#pragma once

#include <string>
#include <string_view>

#include "frame/main_window.h"

namespace kelvane {

/// How a program's working copy is made.
enum class Copy_kind {
    plain,      ///< byte for byte
    converted,  ///< 7 bits, every line end CR LF
};

/// The kind for a file that begins with `sample` (at most 4096 bytes are looked at). Converted is a
/// file in which a line feed stands without a carriage return, and a tape image: a file all of
/// whose bytes have even, or all odd, parity, and a good part of them bit 7 set. A text with
/// accented letters in its comments has bytes of both parities and stays as it is.
[[nodiscard]] Copy_kind copy_kind(std::string_view sample);

/// Every character masked to 7 bits, every CR dropped, every LF made CR LF.
[[nodiscard]] std::string converted_copy(std::string_view content);

/// Writes the working copy of `path` over the old one in the program directory. Without it, after a
/// critical box that names the file, false; so it is when `path` is the working copy itself.
[[nodiscard]] bool Make_scratchpad_copy(Kelvane_lite_form& window, const std::string& path);

}  // namespace kelvane
