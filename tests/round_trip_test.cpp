// Whatever is sent in any tape code comes back from the machine as it was, as far as the code has
// the characters. Programs are random with a fixed seed.

#include <gtest/gtest.h>
#include <random>
#include <string_view>

#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

struct Tape_code_row {
    const char* setting;
    std::string_view carries;
};

constexpr std::string_view ascii =
    " !\"#$%&'()*+,-./"
    "0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~"
    "\t";
// ":" shares its code with "O", "]" with "{"; "(" is 26, which every receive throws away.
constexpr std::string_view eia = " $%&)+,-./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ[{}";

constexpr Tape_code_row tape_codes_sent[] = {
    {" 0", ascii}, {" 1", ascii}, {" 2", ascii}, {" 3", eia}};
constexpr const char* ends_of_block[] = {" 0", " 1", " 2", " 3", "4LFCRCR", "4LFNULNUL"};

class Random_programs {
  public:
    /// Lines ended by CR LF; some are empty.
    std::string program(std::string_view characters) {
        std::string text;
        for (std::size_t lines = number(1, 12); lines > 0; --lines) {
            for (std::size_t length = number(0, 3) == 0 ? 0 : number(1, 40); length > 0; --length) {
                text += characters[number(0, characters.size() - 1)];
            }
            text += "\r\n";
        }
        return text;
    }
    std::size_t number(std::size_t least, std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(least, most)(engine_);
    }

  private:
    std::mt19937 engine_{20240229};
};

std::string with_line_feeds_only(std::string text) {
    std::erase(text, '\r');
    return text;
}

/// Runs `round` with every tape code, end of block, and with and without code recognition.
template <typename Round>
void for_every_setting(Round round) {
    for (const Tape_code_row& code : tape_codes_sent) {
        for (const char* end_of_block : ends_of_block) {
            for (const char* recognition : {"YES", "NO"}) {
                SCOPED_TRACE(std::string("code") + code.setting + ", end of block " + end_of_block +
                             ", recognition " + recognition);
                round(code, end_of_block, recognition);
            }
        }
    }
}

TEST(Round_trip, brings_every_program_back) {
    Random_programs random;
    for_every_setting([&](const auto& code, const char* end_of_block, const char* recognition) {
        for (const bool line_feeds_only : {false, true, false}) {
            const std::string text = random.program(code.carries);
            Shop_floor shop;
            const std::string handshake = " " + decimal(static_cast<int>(random.number(0, 3)));
            shop.machine_file(
                "Mill", {{4, code.setting}, {5, handshake}, {6, end_of_block}, {13, recognition}});
            shop.program("OUT.NC", line_feeds_only ? with_line_feeds_only(text) : text);
            shop.send("OUT.NC");
            shop.receive_from_machine("BACK.NC", std::string(shop.received()));
            EXPECT_EQ(shop.file("BACK.NC"), text);
            EXPECT_TRUE(shop.idle());
        }
    });
}

}  // namespace
}  // namespace kelvane::testing
