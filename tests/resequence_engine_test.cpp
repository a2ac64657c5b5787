// The renumbering itself: tables of programs before and after, and what must hold for any program.

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>

#include "platform/basic_text.h"
#include "resequence/engine.h"
#include "resequence/preview.h"
#include "resequence/report.h"

namespace kelvane {
namespace {

const std::map<std::string, bool Resequence_options::*> flags = {
    {"zeros", &Resequence_options::leading_zeros},
    {"space", &Resequence_options::add_space},
    {"decimal", &Resequence_options::decimal_numbers},
    {"gotos", &Resequence_options::gotos},
    {"n-only", &Resequence_options::n_lines_only},
    {"t-only", &Resequence_options::t_lines_only},
    {"ids", &Resequence_options::skip_id_lines},
    {"blanks", &Resequence_options::blank_lines},
    {"comments", &Resequence_options::comments},
    {"brackets", &Resequence_options::bracket_comments},
    {"o-as-n", &Resequence_options::o_same_as_n},
    {"h-with-w", &Resequence_options::h_with_w},
};

const std::map<std::string, std::int64_t Resequence_options::*> numbers = {
    {"start", &Resequence_options::start},
    {"increment", &Resequence_options::increment},
    {"maximum", &Resequence_options::maximum},
};

/// Options by words: flags by name, the others as in "start=5".
Resequence_options options(const std::string& words) {
    Resequence_options result;
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
        const std::string name = word.substr(0, word.find('='));
        const std::string value = word.substr(std::min(name.size() + 1, word.size()));
        if (flags.contains(name)) {
            result.*flags.at(name) = true;
        } else if (name == "digits") {
            result.digits = static_cast<int>(whole_number(value));
        } else if (numbers.contains(name)) {
            result.*numbers.at(name) = whole_number(value);
        } else {
            (name == "letter" ? result.n_character : result.add_to) = value;
        }
    }
    return result;
}

/// The new text, or why there is none.
std::string outcome(const Resequence_result& result) {
    const auto* done = std::get_if<Resequenced>(&result);
    return done != nullptr ? done->text : refusal_text(result);
}

/// "|" stands for a line end, so that a program is one readable text.
std::string program(std::string_view lines) {
    std::string text;
    for (const char c : lines) {
        text += c == '|' ? std::string(cr_lf) : std::string(1, c);
    }
    return text;
}

TEST(Engine, renumbers) {
    const struct {
        const char *options, *before, *after;
    } cases[] = {
        {"", "N1G0X1|G1X2|", "N10G0X1|N20G1X2|"},
        {"zeros space", "N1G0X1|", "N010 G0X1|"},
        {"", "n5X1\nX2", "N10X1|N20X2|"},
        {"start=9980 maximum=9990", "X1|X2|X3|", "N9980X1|N9990X2|N9980X3|"},
        {"", "/N100X1|/2N100X1|/X|/N5|", "/N10X1|/2N20X1|/N30X|/N40|"},
        {"", "N 1.5 G1|N G1|N10N20X|", "N10G1|N20G1|N30N20X|"},
        {"decimal start=5 increment=12340", "X|Y|", "N.005X|N12.345Y|"},
        {"decimal zeros digits=5", "X|", "N00.010X|"},
        {"letter=B", "B5X|N6X|C7|", "B10X|B20X|B30C7|"},
        {"letter=NR", "NR5X|N6X|", "NR10X|NR20X|"},
        {"letter=", "N5X|", "10X|"},
        {"ids", "L999|L1|%|:5||N5|/%|", "L999|N10L1|%|:5|||/N20%|"},
        {"ids", "L1234567|", "N10L1234567|"},
        {"n-only", "G1|n5X|/N7X|||N8|X|", "G1|N10X|/N7X||||X|"},
        {"t-only", "N20 G1 X1|N30 T2 M6|", "G1 X1|N10T2 M6|"},
        {"", "|N5|X|", "||N10X|"},
        {"blanks", "|N5|X|", "N10|N20|N30X|"},
        {"", "N5(A)|/(B)|X(C)|", "(A)|/(B)|N10X(C)|"},
        {"comments", "N5(A)|(B)|", "N10(A)|N20(B)|"},
        {"", "X|N5[A|N6X|B] |Y|[C]|Z|", "N10X|[A|X|B] |N20Y|[C]|N30Z|"},
        {"brackets", "[A|B]|", "N10[A|N20B]|"},
        {"o-as-n", "O5 X|o6X|N7X|", "O10X|o20X|N30X|"},
        {"h-with-w", "N5X(W)|H6W1|X(W)W(W|", "N10X(W)|H20W1|H30X(W)W(W|"},
        {"add=; ids", "%||X|", "%;|;|N10X;|"},
        {"", "X\rY|Z\n\rV\r\rW", "N10X|N20Y|N30Z|N40V||N50W|"},
        {"gotos", "GOTO2\rN2X|\x1A", "N10GOTO20|N20X|"},
        {"blanks", "X\x1A|Y\x1A", "N10X\x1A|N20Y|"},
        // GOTOs and their blocks
        {"gotos", "GOTO7|GOTO 7 |N007X|", "N10GOTO30|N20GOTO 30 |N30X|"},
        {"gotos", "N1IF[#1EQ1]GOTO2(GOTO1)|N2X|", "N10IF[#1EQ1]GOTO20(GOTO10)|N20X|"},
        {"gotos zeros space", "GOTO1|GOTO1 |N1X|", "N010 GOTO030 |N020 GOTO030 |N030 X|"},
        {"gotos t-only", "N1|N2GOTO2|N3X|N1GOTO1|", "N10|N20GOTO20|X|N30GOTO30|"},
        {"gotos", "N1X|N1Y|GOTO1|", "N10X|N20Y|N30GOTO20|"},
        {"gotos add=9GOTO3", "N1GOTO1|", "N10GOTO109GOTO3|"},
        // No result
        {"gotos", "N1GOTO2|", "Cannot resolve GOTO2\nwith an existing N-number."},
        {"gotos", "GOTO 2 M0|", "Cannot resolve GOTO 2 \nwith an existing N-number"},
        {"gotos", "N0X|GOTO#1|", "Cannot resolve GOTO\nwith an existing N-number"},
        {"gotos", "X|GOTO0|", "Cannot resolve GOTO0\nwith an existing N-number."},
        {"gotos", "N1.5X|GOTO1|", "Cannot resolve GOTO1\nwith an existing N-number."},
        {"gotos maximum=50", "X|", "Can't set maximum N# when\nresequencing GOTO statements"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(outcome(resequence(program(c.before), options(c.options))), program(c.after))
            << c.options << ": " << c.before;
    }
}

TEST(Preview, splits_lines_as_the_renumbering_does) {
    const Resequence_preview preview =
        at_once(preview_resequencing("X\rY\n\rZ\r\n\x1A", options(""), {}));
    EXPECT_EQ(preview.before, (std::vector<std::string>{"X", "Y", "Z"}));
    EXPECT_EQ(preview.after, (std::vector<std::string>{"N10X", "N20Y", "N30Z"}));
}

TEST(Engine, keeps_its_limits) {
    std::string text;
    for (int target = 1; target <= 1000; ++target) {
        text += "N" + decimal(target) + "GOTO0" + decimal(target) + "\n";
    }
    EXPECT_TRUE(std::holds_alternative<Resequenced>(resequence(text, options("gotos"))));
    const auto beyond = resequence(text + "GOTO1001\n", options("gotos"));
    EXPECT_EQ(std::get<Fault>(beyond), Fault::subscript_out_of_range);
    Resequence_options great;
    great.increment = 999'999'999'999'999;
    EXPECT_EQ(std::get<Fault>(resequence("X\nX\n", great)), Fault::overflow);
}

Task<bool> goes_on(bool answer) {
    co_return answer;
}

TEST(Engine, says_how_far_it_is_and_stops_in_every_pass) {
    std::string text = "N1GOTO1\r\n";
    while (text.size() < 100'000) {
        text += "X1\r\n";
    }
    std::vector<int> seen;
    const auto run = [&](std::size_t stop) {
        seen.clear();
        return at_once(resequence(text, options("gotos"), [&](int percent) {
            seen.push_back(percent);
            return goes_on(seen.size() < stop);
        }));
    };
    run(SIZE_MAX);
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    EXPECT_EQ(seen.back(), 99);
    EXPECT_GE(seen.size(), 30U);
    for (std::size_t stop = seen.size(); stop > 0; --stop) {
        EXPECT_TRUE(std::holds_alternative<Resequence_cancelled>(run(stop))) << stop;
        EXPECT_EQ(seen.size(), stop);
    }
}

class Any_program : public ::testing::Test {
  protected:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
    bool one_in(int chances) { return below(chances) == 0; }

    Resequence_options any_options() {
        Resequence_options result = options("gotos");
        for (const auto& [name, flag] : flags) {
            result.*flag = result.*flag || (one_in(2) && name != "decimal" && name != "h-with-w");
        }
        result.start = below(100);
        result.increment = 1 + below(20);
        result.digits = below(9);
        return result;
    }

    /// Blocks with and without numbers, each with a mark of its own ("X7"), whose GOTOs all lead to
    /// numbered blocks.
    std::string any_program(bool block_deletes) {
        const int size = 1 + below(60);
        const int numbered = below(size);  // always has its number, as a target for the others
        std::string text;
        for (int line = 0; line < size; ++line) {
            text += block_deletes && one_in(8) ? "/" : "";
            if (line % 3 == numbered % 3) {
                text += (one_in(2) ? "N0" : "N") + decimal(line * 7L) + (one_in(2) ? " " : "");
            }
            text += (one_in(5) ? "(T)X" : "X") + decimal(line);
            const int target = below(size);
            if (target % 3 == numbered % 3) {
                text += (one_in(2) ? "GOTO" : "GOTO ") + decimal(target * 7L);
            }
            text += cr_lf;
        }
        return text;
    }

    std::mt19937 random_{20240611};  // NOLINT: the same programs in every run
};

/// For every GOTO, in their order, the mark of the block it leads to.
std::string jumps(const std::string& text) {
    std::map<int, std::string> marks;
    std::vector<int> targets;
    Text_reader reader(text);
    for (std::string line; reader.line(line);) {
        const std::size_t number = line.find('N');
        const std::size_t mark = line.find('X');
        const std::size_t jump = line.find("GOTO");
        if (number < mark) {
            marks[whole_number(line.substr(number + 1))] = line.substr(mark, jump - mark);
        }
        if (jump != std::string::npos) {
            targets.push_back(whole_number(line.substr(jump + 4)));
        }
    }
    std::string result;
    for (const int target : targets) {
        result += marks[target] + " ";
    }
    return result;
}

TEST_F(Any_program, keeps_its_jumps_and_settles_at_once) {
    for (int round = 0; round < 2000; ++round) {
        const Resequence_options chosen = any_options();
        // Where only lines with N numbers count, "/N5" keeps its number, which another may get.
        const std::string before = any_program(!chosen.n_lines_only);
        const std::string once = outcome(resequence(before, chosen));
        EXPECT_EQ(jumps(once), jumps(before)) << before << once;
        EXPECT_EQ(outcome(resequence(once, chosen)), once) << before;
    }
}

}  // namespace
}  // namespace kelvane
