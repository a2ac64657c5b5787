#include "editing/text_encoding.h"

#include <algorithm>
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

/// Takes one character of UTF-8 off the front of `bytes`.
void decode_character(std::string_view& bytes, std::u16string& to) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const std::size_t wanted = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    std::uint32_t code = lead & (0x3FU >> wanted);
    std::size_t length = 1;
    while (length <= wanted && length < bytes.size() && is_continuation(bytes[length])) {
        code = (code << 6) | (static_cast<unsigned char>(bytes[length]) & 0x3FU);
        ++length;
    }
    bytes.remove_prefix(length);
    if (length <= wanted || (code >= 0xD800 && code < 0xE000) ||
        (lead >= 0xF0 && (code < 0x10000 || code > 0x10FFFF))) {
        to.append(lead >= 0xF0 ? 2 : 1, replacement);
    } else if (code < 0x10000) {
        to += screen_form(static_cast<char16_t>(code));
    } else {
        to += static_cast<char16_t>(0xD7C0 + (code >> 10));
        to += static_cast<char16_t>(0xDC00 + (code & 0x3FFU));
    }
}

void append_utf8(std::string& bytes, std::uint32_t code) {
    const auto put = [&bytes](std::uint32_t byte) { bytes += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
        return;
    }
    if (code < 0x800) {
        put(0xC0 | (code >> 6));
    } else {
        if (code < 0x10000) {
            put(0xE0 | (code >> 12));
        } else {
            put(0xF0 | (code >> 18));
            put(0x80 | ((code >> 12) & 0x3FU));
        }
        put(0x80 | ((code >> 6) & 0x3FU));
    }
    put(0x80 | (code & 0x3FU));
}

bool is_high_surrogate(char16_t c) {
    return c >= 0xD800 && c < 0xDC00;
}

bool is_low_surrogate(char16_t c) {
    return c >= 0xDC00 && c < 0xE000;
}

/// Takes one character off the front of `text`; "?" for half a pair.
std::uint32_t take_character(std::u16string_view& text) {
    const char16_t first = text[0];
    const bool pair = is_high_surrogate(first) && text.size() > 1 && is_low_surrogate(text[1]);
    std::uint32_t code = stored_form(first);
    if (pair) {
        code = 0x10000 + ((first - 0xD800U) << 10) + (text[1] - 0xDC00U);
    } else if (is_high_surrogate(first) || is_low_surrogate(first)) {
        code = '?';
    }
    text.remove_prefix(pair ? 2 : 1);
    return code;
}

/// Bytes of the character of UTF-8 with which `bytes` begin, 0 when it is none.
std::size_t character_length(std::string_view bytes) {
    if (static_cast<unsigned char>(bytes[0]) < 0x80) {
        return 1;
    }
    for (std::size_t length = 2; length <= std::min<std::size_t>(4, bytes.size()); ++length) {
        Encoding_check check;
        check.feed(bytes.substr(0, length));
        if (check.result() == Text_encoding::utf8) {
            return length;
        }
    }
    return 0;
}

}  // namespace

void Encoding_check::begin_character(unsigned char lead) {
    valid_ = lead >= 0xC2 && lead <= 0xF4;
    beyond_ascii_ = true;
    missing_ = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    // Longer forms than needed, surrogates and codes beyond U+10FFFF show in the second byte.
    lowest_ = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    highest_ = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
}

void Encoding_check::take(unsigned char byte) {
    if (missing_ > 0) {
        valid_ = byte >= lowest_ && byte <= highest_;
        lowest_ = 0x80;
        highest_ = 0xBF;
        --missing_;
    } else if (byte >= 0x80) {
        begin_character(byte);
    }
}

void Encoding_check::feed(std::string_view piece) {
    while (valid_ && !piece.empty()) {
        const std::size_t plain = missing_ == 0 ? leading_ascii(piece) : 0;
        piece.remove_prefix(plain);
        if (!piece.empty()) {
            take(static_cast<unsigned char>(piece[0]));
            piece.remove_prefix(1);
        }
    }
}

Text_encoding Encoding_check::result() const {
    const bool utf8 = valid_ && beyond_ascii_ && missing_ == 0;
    return utf8 ? Text_encoding::utf8 : Text_encoding::latin1;
}

std::string as_utf8(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = character_length(bytes);
        if (length == 0) {
            append_utf8(text, static_cast<unsigned char>(bytes[0]));
        } else {
            text += bytes.substr(0, length);
        }
        bytes.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return text;
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
            decode_character(bytes, text);
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
        const std::uint32_t code = take_character(text);
        if (encoding == Text_encoding::utf8) {
            append_utf8(bytes, code);
        } else {
            bytes += code < 0x100 ? static_cast<char>(code) : '?';
        }
    }
    return bytes;
}

}  // namespace kelvane
