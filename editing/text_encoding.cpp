#include "editing/text_encoding.h"

#include <cstdint>
#include <cstring>

#include "platform/lines.h"

namespace kelvane {

namespace {

constexpr char16_t pictures = 0x2400;  ///< of the control characters, in their order
constexpr char16_t delete_picture = 0x2421;
constexpr char16_t replacement = 0xFFFD;
constexpr char16_t paragraph_separator = 0x2029;

std::size_t leading_ascii(std::string_view piece) {
    std::size_t at = 0;
    std::uint64_t eight = 0;
    while (at + sizeof eight <= piece.size()) {
        std::memcpy(&eight, piece.data() + at, sizeof eight);
        if ((eight & 0x8080808080808080U) != 0) {
            break;
        }
        at += sizeof eight;
    }
    return at;
}

char16_t screen_form(char16_t c) {
    if (c == paragraph_separator) {
        return replacement;  // a widget would break the line
    }
    if (c == 0x7F) {
        return delete_picture;
    }
    return c < 0x20 && c != '\t' && c != '\n' ? static_cast<char16_t>(pictures + c) : c;
}

char16_t stored_form(char16_t c) {
    if (c == delete_picture) {
        return 0x7F;
    }
    return c >= pictures && c < pictures + 0x20 ? static_cast<char16_t>(c - pictures) : c;
}

/// Takes one character of UTF-8 off the front of `bytes`, or the beginning of what is none.
void show_character(std::string_view& bytes, std::u16string& to) {
    const std::size_t units = units_of(bytes[0], Text_encoding::utf8);
    const auto character = take_character(bytes);
    if (!character) {
        to.append(units, replacement);
        bytes.remove_prefix(1);
    } else if (units == 1) {
        to += screen_form(static_cast<char16_t>(*character));
    } else {
        to += static_cast<char16_t>(0xD7C0 + (*character >> 10));
        to += static_cast<char16_t>(0xDC00 + (*character & 0x3FFU));
    }
}

bool is_high_surrogate(char16_t c) {
    return c >= 0xD800 && c < 0xDC00;
}

bool is_low_surrogate(char16_t c) {
    return c >= 0xDC00 && c < 0xE000;
}

/// Takes one character off the front of `text`; "?" for half a pair.
char32_t take_typed(std::u16string_view& text) {
    const char16_t first = text[0];
    const bool pair = is_high_surrogate(first) && text.size() > 1 && is_low_surrogate(text[1]);
    char32_t code = stored_form(first);
    if (pair) {
        code = 0x10000 + ((first - 0xD800U) << 10) + (text[1] - 0xDC00U);
    } else if (is_high_surrogate(first) || is_low_surrogate(first)) {
        code = '?';
    }
    text.remove_prefix(pair ? 2 : 1);
    return code;
}

}  // namespace

void Encoding_check::take(unsigned char byte) {
    if (awaited_.following > 0) {
        valid_ = byte >= awaited_.lowest && byte <= awaited_.highest;
        awaited_ = {awaited_.following - 1, 0x80, 0xBF};
    } else if (byte >= 0x80) {
        beyond_ascii_ = true;
        const auto form = utf8_form(byte);
        valid_ = form.has_value();
        awaited_ = form.value_or(Utf8_form{0, 0, 0});
    }
}

void Encoding_check::feed(std::string_view piece) {
    while (valid_ && !piece.empty()) {
        const std::size_t plain = awaited_.following == 0 ? leading_ascii(piece) : 0;
        piece.remove_prefix(plain);
        if (!piece.empty()) {
            take(static_cast<unsigned char>(piece[0]));
            piece.remove_prefix(1);
        }
    }
}

Text_encoding Encoding_check::result() const {
    const bool utf8 = valid_ && beyond_ascii_ && awaited_.following == 0;
    return utf8 ? Text_encoding::utf8 : Text_encoding::latin1;
}

std::u16string shown_text(std::string_view bytes, Text_encoding encoding) {
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const char byte = bytes[0];
        if (byte == '\n' || byte == '\r') {
            text += u'\n';
            bytes.remove_prefix(line_end_length(bytes, 0));
        } else if (encoding == Text_encoding::latin1 || static_cast<unsigned char>(byte) < 0x80) {
            text += screen_form(static_cast<unsigned char>(byte));
            bytes.remove_prefix(1);
        } else if (is_continuation(byte)) {
            bytes.remove_prefix(1);
        } else {
            show_character(bytes, text);
        }
    }
    return text;
}

std::string typed_bytes(std::u16string_view text, Text_encoding encoding,
                        std::string_view line_end) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        if (text[0] == u'\n' || text[0] == paragraph_separator) {
            bytes += line_end;
            text.remove_prefix(1);
            continue;
        }
        const char32_t code = take_typed(text);
        if (encoding == Text_encoding::utf8) {
            append_utf8(bytes, code);
        } else {
            bytes += code < 0x100 ? static_cast<char>(code) : '?';
        }
    }
    return bytes;
}

}  // namespace kelvane
