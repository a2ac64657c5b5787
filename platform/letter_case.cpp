#include "platform/letter_case.h"

#include "platform/utf8.h"

namespace kelvane {

namespace {

/// Capitals whose small letters stand `distance` further on; every second letter of a run of pairs.
struct Capitals {
    char32_t first, last, distance;
    bool pairs;
};

constexpr Capitals capitals[] = {
    {'A', 'Z', 32, false},     {0xC0, 0xD6, 32, false},   {0xD8, 0xDE, 32, false},
    {0x100, 0x136, 1, true},   {0x139, 0x147, 1, true},   {0x14A, 0x176, 1, true},
    {0x179, 0x17D, 1, true},   {0x391, 0x3AB, 32, false}, {0x400, 0x40F, 80, false},
    {0x410, 0x42F, 32, false},
};

char32_t small_letter(char32_t character) {
    for (const Capitals& range : capitals) {
        if (character >= range.first && character <= range.last &&
            (!range.pairs || (character - range.first) % 2 == 0)) {
            return character + range.distance;
        }
    }
    return character;
}

}  // namespace

std::u32string small_letters(std::string_view text) {
    std::u32string utf_8;
    for (std::string_view rest = text; !rest.empty();) {
        if (const auto character = take_character(rest)) {
            utf_8 += small_letter(*character);
            continue;
        }
        std::u32string latin_1;
        for (const char c : text) {
            latin_1 += small_letter(static_cast<unsigned char>(c));
        }
        return latin_1;
    }
    return utf_8;
}

}  // namespace kelvane
