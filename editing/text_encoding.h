#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/utf8.h"

namespace kelvane {

/// How the bytes of a program are shown and what is stored for typed characters. Bytes that nobody
/// edits never pass through it.
enum class Text_encoding {
    latin1,  ///< a byte a character; also for programs of plain ASCII
    utf8,    ///< well-formed UTF-8 that holds at least one character beyond ASCII
};

/// Recognises the encoding of bytes that come in pieces.
class Encoding_check {
  public:
    void feed(std::string_view piece);
    /// What all pieces together are.
    [[nodiscard]] Text_encoding result() const;

  private:
    void take(unsigned char byte);

    bool valid_ = true;
    bool beyond_ascii_ = false;
    Utf8_form awaited_ = {0, 0, 0};  ///< of the character begun, from its next byte on
};

/// UTF-16 units that a text widget counts for a byte that is no part of a line end: a character of
/// UTF-8 counts at its first byte, two beyond U+FFFF.
constexpr std::size_t units_of(char byte, Text_encoding encoding) {
    if (encoding == Text_encoding::latin1 || static_cast<unsigned char>(byte) < 0x80) {
        return 1;
    }
    return is_continuation(byte) ? 0 : static_cast<unsigned char>(byte) >= 0xF0 ? 2 : 1;
}

/// The bytes as a text widget gets them, with as many units as `units_of` counts: every line end,
/// however many characters it has, is one LF, control characters are the pictures from U+2400 on
/// (tabs stay), what is no character is U+FFFD.
std::u16string shown_text(std::string_view bytes, Text_encoding encoding);

/// The bytes of typed or pasted text: LF and paragraph separators become `line_end`, pictures of
/// control characters the characters, and what Latin-1 lacks "?".
std::string typed_bytes(std::u16string_view text, Text_encoding encoding,
                        std::string_view line_end);

}  // namespace kelvane
