#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

/// A byte inside a UTF-8 character, not its first.
constexpr bool is_continuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// What may follow the first byte of a well-formed UTF-8 character (the Unicode Standard, table of
/// well-formed byte sequences). Forms longer than needed, surrogates and characters beyond U+10FFFF
/// are known by the second byte; any further one is from 0x80 to 0xBF.
struct Utf8_form {
    int following;                  ///< bytes, 0 to 3
    unsigned char lowest, highest;  ///< second byte
};

/// The form of a character that begins with `lead`; no value when none does.
[[nodiscard]] std::optional<Utf8_form> utf8_form(unsigned char lead);

/// Takes the character with which `bytes`, which are not empty, begin off them; no value, and
/// nothing taken, when they begin with none.
[[nodiscard]] std::optional<char32_t> take_character(std::string_view& bytes);

/// Appends the UTF-8 of `character`, at most U+10FFFF.
void append_utf8(std::string& bytes, char32_t character);

/// `bytes` as UTF-8; each one that is part of no character of it is taken for Latin-1. Messages
/// hold names of several origins.
[[nodiscard]] std::string as_utf8(std::string_view bytes);

}  // namespace kelvane
