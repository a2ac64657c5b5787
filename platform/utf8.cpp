#include "platform/utf8.h"

namespace kelvane {

namespace {

char32_t first_bits(unsigned char lead, int following) {
    return following == 0 ? lead : lead & (0x3FU >> static_cast<unsigned>(following));
}

}  // namespace

std::optional<Utf8_form> utf8_form(unsigned char lead) {
    if (lead < 0x80) {
        return Utf8_form{0, 0, 0};
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return std::nullopt;
    }
    switch (lead) {
        case 0xE0:
            return Utf8_form{2, 0xA0, 0xBF};
        case 0xED:
            return Utf8_form{2, 0x80, 0x9F};
        case 0xF0:
            return Utf8_form{3, 0x90, 0xBF};
        case 0xF4:
            return Utf8_form{3, 0x80, 0x8F};
        default:
            return Utf8_form{lead > 0xF0 ? 3 : lead > 0xE0 ? 2 : 1, 0x80, 0xBF};
    }
}

std::optional<char32_t> take_character(std::string_view& bytes) {
    const auto lead = static_cast<unsigned char>(bytes.front());
    const auto form = utf8_form(lead);
    const std::size_t length = form ? static_cast<std::size_t>(form->following) + 1 : 0;
    if (!form || bytes.size() < length) {
        return std::nullopt;
    }
    char32_t character = first_bits(lead, form->following);
    for (std::size_t at = 1; at < length; ++at) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        if (!is_continuation(bytes[at]) ||
            (at == 1 && (byte < form->lowest || byte > form->highest))) {
            return std::nullopt;
        }
        character = character << 6U | (byte & 0x3FU);
    }
    bytes.remove_prefix(length);
    return character;
}

void append_utf8(std::string& bytes, char32_t character) {
    const auto put = [&bytes](char32_t byte) { bytes += static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
        return;
    }
    if (character < 0x800) {
        put(0xC0 | (character >> 6));
    } else {
        if (character < 0x10000) {
            put(0xE0 | (character >> 12));
        } else {
            put(0xF0 | (character >> 18));
            put(0x80 | ((character >> 12) & 0x3FU));
        }
        put(0x80 | ((character >> 6) & 0x3FU));
    }
    put(0x80 | (character & 0x3FU));
}

std::string as_utf8(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        if (const auto character = take_character(bytes)) {
            append_utf8(text, *character);
        } else {
            append_utf8(text, static_cast<unsigned char>(bytes.front()));
            bytes.remove_prefix(1);
        }
    }
    return text;
}

}  // namespace kelvane
