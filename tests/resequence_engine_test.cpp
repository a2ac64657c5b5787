// The renumbering itself: tables of programs before and after, and what must hold for any program.

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/basic_text.h"
#include "resequence/engine.h"

namespace kelvane {
namespace {

/// "|" stands for a line end, so that a program is one readable text.
std::string program(std::string_view lines) {
    std::string text;
    for (const char c : lines) {
        text += c == '|' ? std::string(cr_lf) : std::string(1, c);
    }
    return text;
}

Resequence_options plain() {
    Resequence_options options;
    options.bracket_comments = true;
    return options;
}

template <typename... Change>
Resequence_options with(Change... change) {
    Resequence_options options = plain();
    (change(options), ...);
    return options;
}

/// What the operator sees of a result.
std::string outcome(const Resequence_result& result) {
    struct Words {
        std::string operator()(const Resequenced& done) const { return done.text; }
        std::string operator()(const Unresolved_goto& it) const {
            return "unresolved <" + it.target + (it.at_line_end ? ">." : ">");
        }
        std::string operator()(Fault fault) const { return std::string(fault_text(fault)); }
        std::string operator()(Resequence_cancelled) const { return "cancelled"; }
        std::string operator()(Maximum_with_gotos) const { return "maximum with gotos"; }
    };
    return std::visit(Words(), result);
}

using Options = Resequence_options;
constexpr auto zeros = [](Options& o) { o.leading_zeros = true; };
constexpr auto space = [](Options& o) { o.add_space = true; };
constexpr auto decimals = [](Options& o) { o.decimal_numbers = true; };
constexpr auto gotos = [](Options& o) { o.gotos = true; };
constexpr auto n_only = [](Options& o) { o.n_lines_only = true; };
constexpr auto t_only = [](Options& o) { o.t_lines_only = true; };
constexpr auto ids = [](Options& o) { o.skip_id_lines = true; };
constexpr auto blanks = [](Options& o) { o.blank_lines = true; };
constexpr auto comments = [](Options& o) { o.comments = true; };
constexpr auto no_brackets = [](Options& o) { o.bracket_comments = false; };
constexpr auto o_as_n = [](Options& o) { o.o_same_as_n = true; };
constexpr auto h_with_w = [](Options& o) { o.h_with_w = true; };
auto from(std::int64_t n) {
    return [n](Options& o) { o.start = n; };
}
auto by(std::int64_t n) {
    return [n](Options& o) { o.increment = n; };
}
auto up_to(std::int64_t n) {
    return [n](Options& o) { o.maximum = n; };
}
auto five_digits() {
    return [](Options& o) { o.leading_zeros = true, o.digits = 5; };
}
auto letter(const char* text) {
    return [text](Options& o) { o.n_character = text; };
}
auto adding(const char* text) {
    return [text](Options& o) { o.add_to = text; };
}

struct Case {
    const char* name;
    Options options;
    const char* before;
    const char* after;
};

TEST(Engine, renumbers) {
    const Case cases[] = {
        {"old and new blocks", with(), "N1G0X1|G1X2|", "N10G0X1|N20G1X2|"},
        {"default look", with(zeros, space), "N1G0X1|", "N010 G0X1|"},
        {"line feeds, no last end", with(), "n5X1\nX2", "N10X1|N20X2|"},
        {"nothing", with(), "", ""},
        {"back to the start", with(from(9980), up_to(9990)), "X1|X2|X3|",
         "N9980X1|N9990X2|N9980X3|"},
        {"block delete", with(), "/N100X1|/2N100X1|/X|", "/N10X1|/2N20X1|/N30X|"},
        {"the cut", with(), "N 1.5 G1|N G1|N10N20X|", "N10G1|N20G1|N30N20X|"},
        {"decimals", with(decimals, from(5), by(12340)), "X|Y|", "N.005X|N12.345Y|"},
        {"decimals of three digits", with(decimals, zeros, from(10)), "X|", "N.010X|"},
        {"point and zeros", with(decimals, five_digits(), from(10)), "X|", "N00.010X|"},
        {"own letter", with(letter("B")), "B5X|N6X|C7|", "B10X|B20X|B30C7|"},
        {"own letters", with(letter("NR")), "NR5X|N6X|", "NR10X|NR20X|"},
        {"no letter", with(letter("")), "N5X|", "10X|"},
        {"ids", with(ids), "L999|L1|%|:5|N5|/%|", "L999|N10L1|%|:5||/N20%|"},
        {"a long id is a block", with(ids), "L1234567|", "N10L1234567|"},
        {"only N", with(n_only), "G1|n5X|/N7X|||N8|X|", "G1|N10X|/N7X||||X|"},
        {"only T", with(t_only), "N20 G1 X1|N30 T2 M6|", "G1 X1|N10T2 M6|"},
        {"blank lines stay", with(), "|N5|X|", "||N10X|"},
        {"blank lines", with(blanks), "|N5|X|", "N10|N20|N30X|"},
        {"comments", with(), "N5(A)|/(B)|X(C)|", "(A)|/(B)|N10X(C)|"},
        {"comments numbered", with(comments), "N5(A)|(B)|", "N10(A)|N20(B)|"},
        {"brackets", with(no_brackets), "X|N5[A|N6X|B] |Y|[C]|Z|", "N10X|[A|X|B] |N20Y|[C]|N30Z|"},
        {"brackets numbered", with(), "[A|X|B]|", "N10[A|N20X|N30B]|"},
        {"O like N", with(o_as_n), "O5 X|o6X|N7X|", "O10X|o20X|N30X|"},
        {"O as text", with(), "O5X|", "N10O5X|"},
        {"H with W", with(h_with_w), "N5X(W)|H6W1|X(W)W(W|", "N10X(W)|H20W1|H30X(W)W(W|"},
        {"added text", with(adding(" ;"), ids), "%||X|", "% ;| ;|N10X ;|"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(outcome(resequence(program(c.before), c.options)), program(c.after)) << c.name;
    }
}

TEST(Engine, rewrites_gotos) {
    const Case cases[] = {
        {"both forms", with(gotos), "GOTO7|GOTO 7 |N007X|", "N10GOTO30|N20GOTO 30 |N30X|"},
        {"two in a line", with(gotos), "N1IF[#1EQ1]GOTO2(GOTO1)|N2|X|",
         "N10IF[#1EQ1]GOTO20(GOTO10)|N20|N30X|"},
        {"with the look of numbers", with(gotos, zeros, space), "GOTO1|GOTO1 |N1X|",
         "N010 GOTO030 |N020 GOTO030 |N030 X|"},
        {"targets pass every filter", with(gotos, t_only), "N1|N2GOTO2|N3X|N1GOTO1|",
         "N10|N20GOTO20|X|N30GOTO30|"},
        {"the last of two blocks", with(gotos), "N1X|N1Y|GOTO1|", "N10X|N20Y|N30GOTO20|"},
        {"added text is no target", with(gotos, adding("9GOTO3")), "N1GOTO1|", "N10GOTO109GOTO3|"},
        {"nobody there", with(gotos), "N1GOTO2|", "unresolved <2>."},
        {"nobody there, more words", with(gotos), "N1GOTO 2 M0|", "unresolved < 2 >"},
        {"computed", with(gotos), "N0X|N1GOTO#1|", "unresolved <>"},
        {"zero names no unnumbered block", with(gotos), "X|GOTO0|", "unresolved <0>."},
        {"fractions are nobody", with(gotos), "N1.5X|GOTO1|", "unresolved <1>."},
        {"not asked for", with(up_to(50)), "N1GOTO2|", "N10GOTO2|"},
        {"with a maximum", with(gotos, up_to(50)), "X|", "maximum with gotos"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(outcome(resequence(program(c.before), c.options)), program(c.after)) << c.name;
    }
}

TEST(Engine, keeps_its_limits) {
    std::string text;
    for (int target = 1; target <= 1000; ++target) {
        text += "N" + decimal(target) + "GOTO0" + decimal(target) + "\n";
    }
    EXPECT_NE(outcome(resequence(text, with(gotos))), "Subscript out of range");
    EXPECT_EQ(outcome(resequence(text + "GOTO1001\n", with(gotos))), "Subscript out of range");
    EXPECT_EQ(outcome(resequence("X\nX\n", with(by(999'999'999'999'999)))), "Overflow");
}

TEST(Engine, says_how_far_it_is_and_stops_in_every_pass) {
    std::string text = "N1GOTO1\r\n";
    while (text.size() < 100'000) {
        text += "X1\r\n";
    }
    std::vector<int> seen;
    const auto watch = [&seen](int percent) {
        seen.push_back(percent);
        return true;
    };
    EXPECT_TRUE(std::holds_alternative<Resequenced>(resequence(text, with(gotos), watch)));
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    EXPECT_EQ(seen.back(), 99);
    const auto calls = static_cast<int>(seen.size());
    EXPECT_GE(calls, 30);
    for (int stop = 1; stop <= calls; ++stop) {
        int call = 0;
        const auto until = [&call, stop](int) { return ++call < stop; };
        EXPECT_EQ(outcome(resequence(text, with(gotos), until)), "cancelled") << stop;
        EXPECT_EQ(call, stop);
    }
}

// --- Any program -----------------------------------------------------------------------------

using Random = std::mt19937;

int below(Random& random, int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
}

/// A program of blocks with and without numbers, each marked by a word of its own ("X7"), whose
/// GOTOs all lead to numbered blocks. (A "/N5" is no line with an N number: where only those count
/// it keeps its old number, which another block may get.)
std::string random_program(Random& random, bool block_deletes) {
    const int size = 1 + below(random, 60);
    std::vector<int> numbers;
    for (int line = 0; line < size; ++line) {
        numbers.push_back(below(random, 3) == 0 ? -1 : line * 7 + below(random, 7));
    }
    std::string text;
    for (int line = 0; line < size; ++line) {
        const int number = numbers[static_cast<std::size_t>(line)];
        const int target = numbers[static_cast<std::size_t>(below(random, size))];
        text += block_deletes && below(random, 8) == 0 ? "/" : "";
        if (number >= 0) {
            text += (below(random, 2) == 0 ? "N0" : "N") + decimal(number);
            text += below(random, 2) == 0 ? " " : "";
        }
        text += below(random, 5) == 0 ? "(T)" : "";
        text += "X" + decimal(line);
        if (target >= 0) {
            text += (below(random, 2) == 0 ? "GOTO" : "GOTO ") + decimal(target);
        }
        text += "\r\n";
    }
    return text;
}

Resequence_options random_options(Random& random) {
    Resequence_options options;
    options.start = below(random, 100);
    options.increment = 1 + below(random, 20);
    options.digits = below(random, 9);
    options.gotos = true;
    for (bool* flag : {&options.leading_zeros, &options.add_space, &options.n_lines_only,
                       &options.t_lines_only, &options.skip_id_lines, &options.blank_lines,
                       &options.comments, &options.bracket_comments, &options.o_same_as_n}) {
        *flag = below(random, 2) == 0;
    }
    return options;
}

/// For every GOTO, in their order, the mark of the block it leads to.
std::vector<std::string> jumps(const std::string& text) {
    std::map<int, std::string> marks;
    std::vector<int> targets;
    Text_reader reader(text);
    std::string line;
    while (reader.line(line)) {
        const bool deletable = line.starts_with('/');
        const std::string words = line.substr(deletable ? 1 : 0);
        const std::size_t mark = line.find('X');
        const std::size_t jump = line.find("GOTO");
        if (words.starts_with('N')) {
            marks[whole_number(words.substr(1))] = line.substr(mark, line.find('G') - mark);
        }
        if (jump != std::string::npos) {
            targets.push_back(whole_number(line.substr(jump + 4)));
        }
    }
    std::vector<std::string> result;
    for (const int target : targets) {
        result.push_back(marks.contains(target) ? marks[target] : "nowhere");
    }
    return result;
}

TEST(Any_program, keeps_its_jumps_and_settles_at_once) {
    Random random(20240611);
    for (int round = 0; round < 2000; ++round) {
        const Resequence_options options = random_options(random);
        const std::string before = random_program(random, !options.n_lines_only);
        const std::string once = outcome(resequence(before, options));
        EXPECT_EQ(jumps(once), jumps(before)) << before << once;
        EXPECT_EQ(outcome(resequence(once, options)), once) << before;
    }
}

TEST(Any_bytes, are_taken_and_no_line_is_lost) {
    Random random(7);
    const std::string alphabet = "NnOHLTWXG/%:()[]0123456789.  GOTO\r\n\n\xA0\x1A";
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (int size = below(random, 200); size > 0; --size) {
            text += below(random, 20) == 0
                        ? std::string("GOTO")
                        : std::string(1, alphabet[static_cast<std::size_t>(
                                             below(random, static_cast<int>(alphabet.size())))]);
        }
        Resequence_options options = random_options(random);
        options.gotos = below(random, 2) == 0;
        options.decimal_numbers = below(random, 2) == 0;
        options.h_with_w = below(random, 2) == 0;
        const auto result = resequence(text, options);
        if (const auto* done = std::get_if<Resequenced>(&result)) {
            const auto ends = [](const std::string& t) {
                return std::count(t.begin(), t.end(), '\n');
            };
            EXPECT_EQ(ends(done->text),
                      ends(text) + (text.empty() || text.ends_with('\n') ? 0 : 1));
        }
    }
}

}  // namespace
}  // namespace kelvane
