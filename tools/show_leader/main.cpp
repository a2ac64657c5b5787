// Prints a readable leader as a person sees it on the tape, one hole a mark, so that the font can
// be looked at after a change. Without an argument it shows the whole font.

#include <iostream>
#include <string>
#include <string_view>

#include "transmit/readable_leader.h"
#include "transmit/tape_font.h"

namespace {

constexpr int top_channel = 7;
constexpr int sprocket_above = 3;  // the feed holes run between channels 3 and 4

void print_tape(std::string_view columns) {
    const std::string edge(columns.size() + 2, '-');
    std::cout << edge << '\n';
    for (int channel = top_channel; channel >= 0; --channel) {
        std::cout << ' ';
        for (const char column : columns) {
            std::cout << ((static_cast<unsigned char>(column) >> channel & 1) != 0 ? 'O' : ' ');
        }
        std::cout << '\n';
        if (channel == sprocket_above) {
            std::cout << ' ' << std::string(columns.size(), '.') << '\n';
        }
    }
    std::cout << edge << '\n';
}

void print_font() {
    constexpr std::size_t glyphs_a_strip = 13;
    std::string strip;
    std::size_t count = 0;
    for (const kelvane::Tape_glyph& glyph : kelvane::tape_font()) {
        strip += glyph.bytes();
        strip += std::string(2, '\0');
        if (++count % glyphs_a_strip == 0 || count == kelvane::tape_font_size) {
            print_tape(strip);
            strip.clear();
        }
    }
}

int usage() {
    std::cerr << "usage: show_leader [FILE [TAPE_CODE]]\n"
                 "  FILE       the program whose name is spelt; without it, the whole font\n"
                 "  TAPE_CODE  0 even parity, 1 odd parity, 2 no parity (default), 3 EIA\n";
    return 2;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string_view code = count > 2 ? arguments[2] : "2";
    if (count > 3 || code.size() != 1 || code[0] < '0' || code[0] > '3') {
        return usage();
    }
    if (count == 1) {
        print_font();
    } else {
        print_tape(kelvane::readable_leader(arguments[1],
                                            static_cast<kelvane::Tape_code>(code[0] - '0'), "")
                       .leader);
    }
    return 0;
}
