#include "print/code39.h"

#include <algorithm>

#include "platform/basic_text.h"

namespace kelvane {

std::string barcode_file_text(std::string_view path) {
    const std::size_t last = path.find_last_of("\\/:");
    return upper_case(last == std::string_view::npos ? path : path.substr(last + 1));
}

std::string barcode_path_text(std::string_view path) {
    std::string text = upper_case(path);
    std::replace(text.begin(), text.end(), '\\', '/');
    std::replace(text.begin(), text.end(), ':', '.');
    return text;
}

std::string characters_without_barcode(std::string_view text) {
    constexpr std::string_view code39 = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ -.$/+%";
    std::string missing;
    for (const char character : text) {
        if (code39.find(character) == std::string_view::npos &&
            missing.find(character) == std::string::npos) {
            missing += character;
        }
    }
    return missing;
}

}  // namespace kelvane
