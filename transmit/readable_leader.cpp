#include "transmit/readable_leader.h"

#include "platform/basic_text.h"
#include "platform/files.h"
#include "session/control_characters.h"
#include "transmit/tape_font.h"

namespace kelvane {

namespace {

constexpr std::size_t columns_before_name = 150;
constexpr std::size_t columns_after_name = 60;
constexpr std::size_t tail_of_even_codes = 200;
constexpr std::size_t tail_of_odd_codes = 180;
constexpr char blank_column = 0;
constexpr char odd_filler = 32;

std::string spelt(std::string_view name) {
    std::string columns;
    for (const char character : name) {
        const std::string_view glyph = tape_glyph(character).bytes();
        if (!columns.empty() && columns.back() != blank_column && glyph.front() != blank_column) {
            columns += blank_column;
        }
        columns += glyph;
    }
    return columns;
}

}  // namespace

Readable_leader readable_leader(std::string_view file, Tape_code tape_code,
                                std::string_view trailer) {
    const bool odd = has_odd_parity(tape_code);
    Readable_leader result;
    result.leader = control::dc2 + std::string(columns_before_name, blank_column) +
                    spelt(upper_case(name_of(file))) +
                    std::string(columns_after_name, odd ? odd_filler : blank_column);
    result.trailer = trailer;
    if (odd) {
        result.trailer.append(columns_after_name, odd_filler);
    }
    result.tail =
        std::string(odd ? tail_of_odd_codes : tail_of_even_codes, blank_column) + control::dc4;
    return result;
}

}  // namespace kelvane
