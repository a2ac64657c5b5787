#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// The bare file name of `path` as a bar code holds it: in capitals, without drive and folders.
std::string barcode_file_text(std::string_view path);

/// The whole path as a bar code holds it: in capitals, with "/" for every "\" and "." for every
/// ":", neither of which Code 39 has.
std::string barcode_path_text(std::string_view path);

/// The characters of `text` that Code 39 has no bars for, each once, in the order of their first
/// appearance. Code 39 has the digits, the capital letters, the blank and "-.$/+%".
std::string characters_without_barcode(std::string_view text);

}  // namespace kelvane
