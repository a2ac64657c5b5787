#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

/// The modules of a Code 39 bar code of `text` from left to right, start and stop characters
/// included, quiet zones not: true is a bar. Empty when a character has none in Code 39 or the text
/// is too long for one code.
std::vector<bool> code39_modules(std::string_view text);

/// Version of the library that makes them: "2.12.2".
std::string barcode_library_version();

}  // namespace kelvane
