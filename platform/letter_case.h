#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// The characters of `text` in small letters, in Latin, Greek and Cyrillic letters beyond ASCII
/// too. A text that is no valid UTF-8 is taken for Latin-1.
[[nodiscard]] std::u32string small_letters(std::string_view text);

}  // namespace kelvane
