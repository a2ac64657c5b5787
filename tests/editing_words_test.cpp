// Words of blocks, and what is found among them.

#include <gtest/gtest.h>

#include "editing/block_words.h"
#include "editing/find.h"
#include "editing/go_to.h"

namespace kelvane {
namespace {

using namespace std::string_literals;

/// A letter a word: its kind, in the order of `Word_kind`.
std::string kinds_of(std::string_view line) {
    static constexpr std::string_view letters = "c/NO%GMTaos=^?";
    std::string kinds;
    Block_reader reader(line);
    Block_word word;
    std::size_t behind = 0;
    while (reader.next(word)) {
        kinds += letters[static_cast<std::size_t>(word.kind)];
        EXPECT_EQ(line.substr(behind, word.begin - behind).find_first_not_of(" \t"),
                  std::string_view::npos)
            << "bytes left out of " << line;
        behind = word.begin + word.length;
    }
    return kinds;
}

TEST(BlockWords, AreOfTheirKinds) {
    const std::pair<std::string, std::string> cases[] = {
        {"N10 G01 X-1.5 Y+.5 F900", "NGaao"},
        {"n10g54.1p2x1y2t3m6", "NGoaaTM"},
        {"/2 N10 G0 / M8", "/NG/M"},
        {"O1001 (PLATE; A)", "Oc"},
        {":12", "O"},
        {"% PM 12 G1", "%"},
        {"G1 X1 (A) Y2 ; G0 (", "Gacac"},
        {"(OPEN G1", "c"},
        {"#1=COS[#2]*3(ROW)", "=c"},
        {"IF[ABS[#25] LT 4.]GOTO 240", "ss"},
        {"WHILE[#5]DO1", "ss"},
        {"G0 X#24 Y-[#1+[2]] Z##3", "Gaaa"},
        {"CALL fixture-slot.nc (4 TIMES)", "sc"},
        {"X10. ,C1. R2.", "aoo"},
        {"X = 10 S1=500", "ao??"},
        {"G\0\x11 X"s, "G^a"},
        {"$1 \"G1\" *", "????"},
        {"", ""},
    };
    for (const auto& [line, kinds] : cases) {
        EXPECT_EQ(kinds_of(line), kinds) << line;
    }
    EXPECT_EQ(kinds_of(std::string(1 << 20, '[')), "=");

    Block_reader reader("x -.50 Y#1");
    Block_word word;
    EXPECT_TRUE(reader.next(word) && word.letter == 'X' && word.number == "-.50");
    EXPECT_TRUE(reader.next(word) && word.letter == 'Y' && word.computed && word.number.empty());
}

TEST(BlockWords, NumbersOfBlocks) {
    EXPECT_EQ(block_number("/2 n 0120G0"), "0120");
    EXPECT_EQ(block_number("G0 N120"), std::nullopt);
    EXPECT_TRUE(same_number("0120.0", "120") && same_number(".010", "0.01"));
    EXPECT_FALSE(same_number("120", "12") || same_number("1.2", "12"));
}

template <typename Search>
Search_state run(Search& search, std::string_view text, std::size_t budget) {
    Search_state state = Search_state::running;
    while (state == Search_state::running) {
        state = search.step(text, budget);
    }
    return state;
}

TEST(Find, GoesRoundInBothDirectionsWhateverTheSteps) {
    const struct {
        const char *text, *wanted;
        Find_options options;
        std::size_t from;
        int found_at;  ///< -1: not found
        bool wrapped;
    } cases[] = {
        {"G1 X1 g1", "G1", {}, 1, 6, false},
        {"G1 X1 g1", "G1", {.case_sensitive = true}, 1, 0, true},
        {"G1 X1 g1", "G1", {.backwards = true}, 6, 0, false},
        {"G1 X1 g1", "G1", {.backwards = true}, 1, 6, true},
        {"G1 X1 g1", "G2", {}, 3, -1, true},
        {"ABAABAB", "ABAB", {}, 4, 3, true},
        {"ABAABAB", "abaa", {.backwards = true}, 2, 0, true},
        {"ABAABAB", "ABAABABA", {}, 0, -1, true},
        {"G1X10X1 X1.5", "X1", {.whole_word = true}, 0, 5, false},
        {"G54.1 G54", "G54", {.whole_word = true}, 0, 6, false},
        {"\xDC \xFC", "\xFC", {}, 0, 0, false},
        {"AB", "", {}, 0, -1, false},
        {"AAA", "A", {}, 99, 0, true},
    };
    for (const auto& c : cases) {
        for (const std::size_t budget : {std::size_t{1}, std::size_t{3}, std::string::npos}) {
            Find find(c.wanted, c.options, Text_encoding::latin1, c.from);
            const bool found = run(find, c.text, budget) == Search_state::found;
            EXPECT_EQ(found ? static_cast<int>(find.found_at()) : -1, c.found_at)
                << c.wanted << " in " << c.text << " from " << c.from;
            EXPECT_EQ(find.wrapped(), c.wrapped) << c.wanted << " in " << c.text;
        }
    }
    Find utf8("\xC3\xBC", {}, Text_encoding::utf8, 0);
    EXPECT_EQ(utf8.step("A\xC3\x9C"), Search_state::found);
}

TEST(Find, ReplacesAllAsOneEdit) {
    const std::string text = "F100 F10 (aaa) f100 M30";
    const struct {
        const char *wanted, *by;
        bool whole;
        std::size_t limit;
        std::string result;
        std::size_t count;
    } cases[] = {
        {"f10", "F9", false, 99, "F90 F9 (aaa) F90 M30", 3},
        {"F10", "F9", true, 99, "F100 F9 (aaa) f100 M30", 1},
        {"aa", "a", false, 99, "F100 F10 (aa) f100 M30", 1},
        {"a", "", false, 99, "F100 F10 () f100 M30", 3},
        {"X", "Y", false, 99, text, 0},
        {"a", "aaaa", false, 30, "", 0},
    };
    for (const auto& c : cases) {
        Replace_all replace(c.wanted, c.by, {.whole_word = c.whole}, Text_encoding::latin1,
                            c.limit);
        const Search_state state = run(replace, text, 4);
        EXPECT_EQ(replace.too_long(), c.result.empty());
        EXPECT_EQ(state == Search_state::found, c.count > 0) << c.wanted;
        if (!replace.too_long()) {
            const Replacement& edit = replace.result();
            EXPECT_EQ(std::string(text).replace(edit.at, edit.removed, edit.added), c.result);
            EXPECT_EQ(edit.count, c.count);
        }
    }
}

TEST(GoTo, LinesAndBlocks) {
    EXPECT_EQ(parse_go_to(" 120 ")->line, 119U);
    EXPECT_EQ(parse_go_to("n 0120")->block, "0120");
    EXPECT_EQ(parse_go_to("99999999999999999999")->line, std::string::npos);
    for (const char* text : {"", "0", "-1", "N", "X1", "12 3", "N1 X2", "N-1"}) {
        EXPECT_FALSE(parse_go_to(text)) << text;
    }
    const std::string text = "%\nN010 G0\r\n/N20 X1\nG1 N30\nN10 Y1\n" + std::string(1 << 20, 'N');
    const struct {
        const char* number;
        std::size_t from, from_line;
        int line;  ///< -1: not found
    } cases[] = {{"10", 0, 0, 1},  {"10", 2, 1, 4},   {"10", 28, 4, 1}, {"0020", 0, 0, 2},
                 {"20", 11, 2, 2}, {"30", 11, 2, -1}, {"1", 0, 0, -1}};
    for (const auto& c : cases) {
        for (const std::size_t budget : {std::size_t{1}, std::string::npos}) {
            Find_block find(c.number, c.from, c.from_line);
            const bool found = run(find, text, budget) == Search_state::found;
            EXPECT_EQ(found ? static_cast<int>(find.found_line()) : -1, c.line) << c.number;
        }
    }
}

}  // namespace
}  // namespace kelvane
