#include "transmit/readable_leader.h"

#include <gtest/gtest.h>
#include <set>

#include "transmit/tape_font.h"

namespace kelvane {
namespace {

std::string columns(std::initializer_list<int> bytes) {
    std::string text;
    for (const int byte : bytes) {
        text += static_cast<char>(byte);
    }
    return text;
}

std::string name_part(std::string_view file) {
    const std::string leader = readable_leader(file, Tape_code::ascii_no_parity, "").leader;
    return leader.substr(151, leader.size() - 151 - 60);
}

TEST(Readable_leader, spells_the_fixed_glyphs) {
    EXPECT_EQ(name_part("."), columns({3, 3, 3}));
    EXPECT_EQ(name_part("-"), columns({24, 24, 24, 24}));
    EXPECT_EQ(name_part("_"), columns({3, 3, 3, 3}));
    EXPECT_EQ(name_part("["), std::string(5, '\0'));
    EXPECT_EQ(name_part("\xC4"), std::string(5, '\0'));
    EXPECT_EQ(tape_glyph('/').bytes(), columns({1, 2, 4, 8, 16, 32}));
    EXPECT_EQ(tape_glyph('\\').bytes(), columns({32, 16, 8, 4, 2, 1}));
}

TEST(Readable_leader, spells_the_bare_name_in_capitals_a_blank_column_between_letters) {
    EXPECT_EQ(name_part("/nc.d/x-.tap"), name_part("X-.TAP"));
    EXPECT_EQ(name_part("-_"), columns({24, 24, 24, 24, 0, 3, 3, 3, 3}));
    EXPECT_EQ(name_part(". ."), columns({3, 3, 3, 0, 0, 0, 0, 0, 3, 3, 3}));
}

TEST(Readable_leader, every_character_has_a_glyph_of_its_own_that_no_control_obeys) {
    const std::string meaningful = columns({10, 11, 13, 17, 18, 19, 20, 37});
    std::set<std::string_view> seen;
    for (const Tape_glyph& glyph : tape_font()) {
        EXPECT_TRUE(seen.insert(glyph.bytes()).second);
        EXPECT_EQ(glyph.bytes().find_first_of(meaningful), std::string_view::npos);
    }
}

TEST(Readable_leader, ends_as_the_tape_code_needs) {
    const std::string beginning = columns({18}) + std::string(150, '\0');
    for (const int code : {0, 1, 2, 3}) {
        SCOPED_TRACE(code);
        const bool odd = code % 2 == 1;
        const auto tape = readable_leader("_", static_cast<Tape_code>(code), "%");
        EXPECT_EQ(tape.leader, beginning + "\3\3\3\3" + std::string(60, odd ? ' ' : '\0'));
        EXPECT_EQ(tape.trailer, "%" + std::string(odd ? 60 : 0, ' '));
        EXPECT_EQ(tape.tail, std::string(odd ? 180 : 200, '\0') + "\x14");
    }
}

}  // namespace
}  // namespace kelvane
