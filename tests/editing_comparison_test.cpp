// Two programs beside each other.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "editing/comparison.h"
#include "platform/lines.h"
#include "support/virtual_loop.h"

namespace kelvane::testing {
namespace {

Comparison compared(const std::string& left, const std::string& right,
                    Compare_options options = {}) {
    Virtual_loop loop;
    return loop.run(compare_programs(loop, left, right, options));
}

/// Rows as "=" (the same), "!" (both, differing), "<" and ">" (on one side only).
std::string rows_of(const Comparison& comparison) {
    std::string rows;
    for (std::size_t i = 0; i < comparison.row_count(); ++i) {
        const Compared_row row = comparison.row(i);
        rows += !row.differs ? '=' : !row.right ? '<' : !row.left ? '>' : '!';
    }
    return rows;
}

TEST(Comparison, PutsLinesBesideEachOther) {
    const struct {
        const char *name, *left, *right, *rows;
        Compare_options options;
    } cases[] = {
        {"the same", "A\nB\n", "A\r\nB\r", "===", {}},
        {"nothing", "", "", "=", {}},
        {"from nothing", "", "A\n", ">=", {}},
        {"a last line end", "A\n", "A", "=<", {}},
        {"a changed line", "A\nB\nC", "A\nX\nC", "=!=", {}},
        {"an added line", "A\nC", "A\nB\nC", "=>=", {}},
        {"lines taken out", "A\nB\nB\nC", "A\nC", "=<<=", {}},
        {"more for less", "A\nB\nC", "A\nX\nY\nC", "=!>=", {}},
        {"lines that repeat", "M\nA\nM\nB\nM", "M\nM\nB\nM\nM", "=<===>", {}},
        {"a line moved", "A\nB\nC\nD\nE", "A\nC\nD\nB\nE", "=<==>=", {}},
        {"all else", "A\nB", "X\nY\nZ", "!!>", {}},
        {"N numbers", "N10 G0X1\n/N20G1", "N5 G0X1\n/ N7 G1", "=!", {.ignore_numbers = true}},
        {"N numbers and blanks", "N10 G0X1\n/N20G1", "G0 X1\n/ N7 G1", "==", {true, true}},
        {"blanks in numbers", "N1G0 X 1", "N2G0X1", "!", {.ignore_blanks = true}},
        {"an N in a comment", "(N1)", "(N2)", "!", {true, true}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(rows_of(compared(c.left, c.right, c.options)), c.rows) << c.name;
    }
}

TEST(Comparison, LeadsFromDifferenceToDifference) {
    const Comparison comparison = compared("A\nB\nC\nD\nE\nF", "A\nX\nY\nC\nD\nF");
    EXPECT_THAT(comparison.differences(),
                ::testing::ElementsAre(Difference{1, 2, 1, 3}, Difference{4, 5, 5, 5}));
    EXPECT_EQ(comparison.row_of(1), 5U);
    EXPECT_EQ(comparison.next(0), 0U);
    EXPECT_EQ(comparison.next(1), 1U);
    EXPECT_EQ(comparison.next(5), std::nullopt);
    EXPECT_EQ(comparison.previous(6), 1U);
    EXPECT_EQ(comparison.previous(5), 0U);
    EXPECT_EQ(comparison.previous(1), std::nullopt);
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> all;
    for (Lines lines(text); !lines.at_end();) {
        all.emplace_back(lines.take());
    }
    all.resize(all.size() + (text.empty() || text.ends_with('\n') ? 1 : 0));
    return all;
}

// Every line stands in one row of its side, in order, and rows that do not differ hold equal lines;
// between two versions no more lines differ than were edited.
TEST(Comparison, LosesNoLine) {
    std::mt19937 random(7);
    const auto below = [&random](std::size_t n) { return random() % n; };
    for (int round = 0; round < 40; ++round) {
        std::vector<std::string> right;
        const std::size_t kinds = round % 4 == 0 ? 3 : 1000;
        std::string left_text, right_text;
        for (std::size_t i = below(300); i > 0; --i) {
            right.push_back("X" + std::to_string(below(kinds)));
            left_text += right.back() + "\n";
        }
        const std::size_t edits = below(20);
        for (std::size_t i = 0; i < edits; ++i) {
            right.insert(right.begin() + static_cast<std::ptrdiff_t>(below(right.size() + 1)),
                         "Y" + std::to_string(below(3)));
        }
        for (const std::string& line : right) {
            right_text += line + "\n";
        }
        const Comparison comparison = compared(left_text, right_text);
        const auto left_lines = lines_of(left_text);
        const auto right_lines = lines_of(right_text);
        std::size_t left = 0, next_right = 0, differing = 0;
        for (std::size_t i = 0; i < comparison.row_count(); ++i) {
            const Compared_row row = comparison.row(i);
            ASSERT_TRUE(!row.left || *row.left == left++);
            ASSERT_TRUE(!row.right || *row.right == next_right++);
            ASSERT_TRUE(row.differs || left_lines[*row.left] == right_lines[*row.right]);
            differing += row.differs ? 1 : 0;
        }
        EXPECT_EQ(left, left_lines.size());
        EXPECT_EQ(next_right, right_lines.size());
        EXPECT_EQ(differing, edits);
    }
}

TEST(Comparison, EndsSoonWhateverTheTextsAndLetsOthersIn) {
    std::string ones, twos;
    for (int i = 0; i < 3000; ++i) {
        ones += i % 3 == 0 ? "A\n" : "B\n";
        twos += i % 2 == 0 ? "B\n" : "C\n";
    }
    EXPECT_EQ(compared(ones, twos).differences().size(), 1U) << "too far from each other";
    EXPECT_EQ(rows_of(compared(ones, ones + "A\n")), std::string(3000, '=') + ">=");
    EXPECT_TRUE(
        compared(std::string(100'000, '\n'), std::string(100'000, '\r')).differences().empty());
    Virtual_loop loop;
    Task_keeper keeper(loop);
    keeper.start([](Event_loop& on, std::string_view text) -> Task<> {
        co_await compare_programs(on, text, "A", {});
    }(loop, ones));
    EXPECT_FALSE(keeper.empty()) << "it can be given up";
}

}  // namespace
}  // namespace kelvane::testing
