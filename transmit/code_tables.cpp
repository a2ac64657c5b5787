#include "transmit/code_tables.h"

#include <bit>
#include <bitset>

namespace kelvane {

namespace {

constexpr auto even = static_cast<std::size_t>(Tape_code::ascii_even);
constexpr auto odd = static_cast<std::size_t>(Tape_code::ascii_odd);
constexpr auto no_parity = static_cast<std::size_t>(Tape_code::ascii_no_parity);
constexpr auto eia_code = static_cast<std::size_t>(Tape_code::eia);
constexpr int parity_bit = 0x80;
constexpr int eia_parity_track = 0x10;

struct Eia_cell {
    int character;
    std::uint8_t byte;
};

// EIA RS-244. NUL is a blank; TAB has a second cell at 209; ":" is the letter O of the program
// number; "$" "&" "[" "]" "{" "}" have no code in the standard and stand where controls expect
// them.
constexpr Eia_cell eia_cells[] = {
    {0, 0x10},   {8, 0x2A},   {9, 0x3E},   {10, 0x80},  {18, 0x4C},  {20, 0x2F},  {' ', 0x10},
    {'$', 0x5B}, {'%', 0x0B}, {'&', 0x0E}, {'(', 0x1A}, {')', 0x4A}, {'+', 0x70}, {',', 0x3B},
    {'-', 0x40}, {'.', 0x6B}, {'/', 0x31}, {'0', 0x20}, {'1', 0x01}, {'2', 0x02}, {'3', 0x13},
    {'4', 0x04}, {'5', 0x15}, {'6', 0x16}, {'7', 0x07}, {'8', 0x08}, {'9', 0x19}, {':', 0x46},
    {'A', 0x61}, {'B', 0x62}, {'C', 0x73}, {'D', 0x64}, {'E', 0x75}, {'F', 0x76}, {'G', 0x67},
    {'H', 0x68}, {'I', 0x79}, {'J', 0x51}, {'K', 0x52}, {'L', 0x43}, {'M', 0x54}, {'N', 0x45},
    {'O', 0x46}, {'P', 0x57}, {'Q', 0x58}, {'R', 0x49}, {'S', 0x32}, {'T', 0x23}, {'U', 0x34},
    {'V', 0x25}, {'W', 0x26}, {'X', 0x37}, {'Y', 0x38}, {'Z', 0x29}, {'[', 0x2C}, {']', 0x7C},
    {'{', 0x7C}, {'}', 0x7A}, {209, 0x3E},
};

void fill_ascii(Code_tables& tables) {
    for (int c = 0; c < 128; ++c) {
        const bool even_bits = std::popcount(static_cast<unsigned>(c)) % 2 == 0;
        const auto bare = static_cast<std::uint8_t>(c);
        const auto marked = static_cast<std::uint8_t>(c | parity_bit);
        auto& row = tables.code_table[static_cast<std::size_t>(c)];
        row[even] = even_bits ? bare : marked;
        row[odd] = even_bits ? marked : bare;
        row[no_parity] = bare;
        tables.reverse_code_table[bare][receive_ascii] = bare;
        tables.reverse_code_table[marked][receive_ascii] = bare;
    }
}

// Ascending order, so that a higher character takes a shared code. Lower-case letters get their
// cells after the reverse table is complete: they punch as capitals and come back as capitals.
void fill_eia(Code_tables& tables) {
    for (const Eia_cell& cell : eia_cells) {
        tables.code_table[static_cast<std::size_t>(cell.character)][eia_code] = cell.byte;
        const auto character = static_cast<std::int16_t>(cell.character);
        tables.reverse_code_table[cell.byte][receive_eia] = character;
        tables.reverse_code_table[cell.byte & ~eia_parity_track][receive_eia] = character;
    }
    for (std::size_t c = 'a'; c <= 'z'; ++c) {
        tables.code_table[c][eia_code] = tables.code_table[c - 32][eia_code];
    }
}

std::bitset<256> set_of(std::string_view characters) {
    std::bitset<256> set;
    for (const char c : characters) {
        set.set(static_cast<unsigned char>(c));
    }
    return set;
}

}  // namespace

std::string Code_tables::sent_bytes(std::string_view text, Tape_code code,
                                    std::string_view mask) const {
    const std::bitset<256> masked = set_of(mask);
    std::string bytes;
    bytes.reserve(text.size());
    for (const char c : text) {
        if (!masked[static_cast<unsigned char>(c)]) {
            bytes.push_back(sent_byte(c, code));
        }
    }
    return bytes;
}

Code_tables Build_code_tables() {
    Code_tables tables;
    fill_ascii(tables);
    fill_eia(tables);
    return tables;
}

}  // namespace kelvane
