#include "simulated_machine/tape_code.h"

#include <array>
#include <bit>

namespace kelvane::simulated {

namespace {

struct Eia_cell {
    char character;
    std::uint8_t byte;
};

// Where two characters share a byte ("O" and ":", "]" and "{") the first row is what it decodes to.
constexpr std::array<Eia_cell, 59> eia_cells{{
    {' ', 0x10},    {'0', 0x20},  {'1', 0x01},    {'2', 0x02},    {'3', 0x13},  {'4', 0x04},
    {'5', 0x15},    {'6', 0x16},  {'7', 0x07},    {'8', 0x08},    {'9', 0x19},  {'A', 0x61},
    {'B', 0x62},    {'C', 0x73},  {'D', 0x64},    {'E', 0x75},    {'F', 0x76},  {'G', 0x67},
    {'H', 0x68},    {'I', 0x79},  {'J', 0x51},    {'K', 0x52},    {'L', 0x43},  {'M', 0x54},
    {'N', 0x45},    {'O', 0x46},  {'P', 0x57},    {'Q', 0x58},    {'R', 0x49},  {'S', 0x32},
    {'T', 0x23},    {'U', 0x34},  {'V', 0x25},    {'W', 0x26},    {'X', 0x37},  {'Y', 0x38},
    {'Z', 0x29},    {'$', 0x5B},  {'%', 0x0B},    {'&', 0x0E},    {'(', 0x1A},  {')', 0x4A},
    {'+', 0x70},    {',', 0x3B},  {'-', 0x40},    {'.', 0x6B},    {'/', 0x31},  {':', 0x46},
    {'[', 0x2C},    {']', 0x7C},  {'{', 0x7C},    {'}', 0x7A},    {'\b', 0x2A}, {'\t', 0x3E},
    {'\xD1', 0x3E}, {'\n', 0x80}, {'\x12', 0x4C}, {'\x14', 0x2F}, {'\0', 0x10},
}};

bool odd_bits(std::uint8_t byte) {
    return std::popcount(byte) % 2 == 1;
}

std::uint8_t encode_eia(char character) {
    const bool small = character >= 'a' && character <= 'z';
    const char wanted = small ? static_cast<char>(character - 'a' + 'A') : character;
    for (const Eia_cell& cell : eia_cells) {
        if (cell.character == wanted) {
            return cell.byte;
        }
    }
    return 0;
}

char decode_eia(std::uint8_t byte) {
    if (byte == 0) {
        return 0;
    }
    for (const Eia_cell& cell : eia_cells) {
        if (cell.byte == byte) {
            return cell.character;
        }
    }
    return '?';
}

std::uint8_t with_parity(std::uint8_t seven_bits, bool odd) {
    return odd_bits(seven_bits) == odd ? seven_bits : static_cast<std::uint8_t>(seven_bits | 0x80U);
}

}  // namespace

std::uint8_t encode(char character, Tape_code code) {
    const auto value = static_cast<std::uint8_t>(character);
    if (code == Tape_code::eia) {
        return encode_eia(character);
    }
    if (value > 127) {
        return 0;
    }
    return code == Tape_code::none ? value : with_parity(value, code == Tape_code::odd);
}

std::string encode(std::string_view text, Tape_code code) {
    std::string tape;
    tape.reserve(text.size());
    for (const char character : text) {
        tape += static_cast<char>(encode(character, code));
    }
    return tape;
}

char decode(std::uint8_t byte, Tape_code code) {
    return code == Tape_code::eia ? decode_eia(byte) : static_cast<char>(byte & 0x7FU);
}

bool parity_good(std::uint8_t byte, Tape_code code) {
    if (byte == 0 || code == Tape_code::none) {
        return true;
    }
    return odd_bits(byte) == (code != Tape_code::even);
}

std::uint8_t control_byte(Control control, Tape_code code) {
    const Tape_code form = code == Tape_code::eia ? Tape_code::even : code;
    return encode(static_cast<char>(control), form);
}

bool is_control(std::uint8_t byte, Control control) {
    return (byte & 0x7FU) == static_cast<std::uint8_t>(control);
}

}  // namespace kelvane::simulated
