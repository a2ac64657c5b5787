// A program as bytes: lines, characters, edits and undo.

#include <gtest/gtest.h>
#include <random>

#include "editing/program_document.h"

namespace kelvane {
namespace {

using namespace std::string_literals;

Program_document document_of(std::string bytes) {
    Program_document document;
    document.load(std::move(bytes));
    document.prepare();
    return document;
}

TEST(TextEncoding, IsUtf8OnlyWhereEveryByteFits) {
    const struct {
        std::string bytes;
        Text_encoding encoding;
        std::u16string shown;
    } cases[] = {
        {"G1 X1", Text_encoding::latin1, u"G1 X1"},
        {"(\xC3\xBC\xE2\x82\xAC)", Text_encoding::utf8, u"(\u00FC\u20AC)"},
        {"(\xFC)", Text_encoding::latin1, u"(\u00FC)"},
        {"\xC3\xBC\xC3", Text_encoding::latin1, u"\u00C3\u00BC\u00C3"},
        {"\xC0\xAF", Text_encoding::latin1, u"\u00C0\u00AF"},
        {"\xED\xA0\x80", Text_encoding::latin1, u"\u00ED\u00A0\u0080"},
        {"\xF0\x9F\x94\xA7", Text_encoding::utf8, u"\U0001F527"},
        {"%\0\x11\t\x7F\r"s, Text_encoding::latin1, u"%\u2400\u2411\t\u2421\n"},
        {"\xE2\x80\xA9", Text_encoding::utf8, u"\uFFFD"},
    };
    for (const auto& c : cases) {
        Encoding_check check;
        for (const char byte : c.bytes) {
            check.feed({&byte, 1});
        }
        EXPECT_EQ(check.result(), c.encoding) << c.bytes;
        EXPECT_EQ(shown_text(c.bytes, c.encoding), c.shown) << c.bytes;
    }
    EXPECT_EQ(typed_bytes(u"\u2411\u20AC\n\u00E9", Text_encoding::latin1, "\r"), "\x11?\r\xE9");
    EXPECT_EQ(typed_bytes(u"\U0001F527\u20AC\xD800", Text_encoding::utf8, "\n"),
              "\xF0\x9F\x94\xA7\xE2\x82\xAC?");
}

TEST(LineIndex, KnowsEveryLineEndAndExtremeTexts) {
    const Program_document mixed = document_of("A\r\nB\nC\rD\r\r\nE\n\r\n\rF\r\r");
    const std::string_view lines[] = {"A", "B", "C", "D", "E", "", "F", "", ""};
    ASSERT_EQ(mixed.line_count(), std::size(lines));
    for (std::size_t i = 0; i < std::size(lines); ++i) {
        EXPECT_EQ(mixed.line(i), lines[i]) << i;
        EXPECT_EQ(mixed.line_at(mixed.line_start(i)), i);
    }
    EXPECT_EQ(mixed.line(9), "");
    EXPECT_EQ(document_of("").line_count(), 1U);

    const std::string long_line(1 << 20, 'X');
    const Program_document extreme =
        document_of(long_line + "\n" + std::string(100'000, '\n') + std::string(100'000, '\0'));
    EXPECT_EQ(extreme.line_count(), 100'002U);
    EXPECT_EQ(extreme.line(0), long_line);
    EXPECT_EQ(extreme.line_start(100'000), long_line.size() + 100'000);
    EXPECT_EQ(extreme.line(100'001).size(), 100'000U);
    EXPECT_EQ(extreme.line_at(long_line.size() + 77), 77U);
}

TEST(ProgramDocument, LargeProgramsAreReadInPiecesAndNotEdited) {
    Program_document document;
    const std::string piece = "N10 G1 X1.\r\n";
    const std::size_t count = Program_document::max_editable / piece.size() + 1;
    document.begin_load(count * piece.size());
    for (std::size_t i = 0; i < count; ++i) {
        document.load_piece(piece);
    }
    std::size_t steps = 1;
    while (!document.prepare(1 << 20)) {
        ++steps;
    }
    EXPECT_GT(steps, 16U);
    EXPECT_EQ(document.line_count(), count + 1);
    EXPECT_EQ(document.line(count - 1), "N10 G1 X1.");
    EXPECT_FALSE(document.editable());
    EXPECT_FALSE(document.replace(0, 0, "X"));
    EXPECT_FALSE(document.typed(0, 3, u"Y"));
    EXPECT_EQ(document.text().size(), count * piece.size());
}

TEST(ProgramDocument, TypingIsUndoneInSteps) {
    Program_document document = document_of("N1 G0\rN2\r");
    document.typed(5, 0, u"X");
    document.typed(6, 0, u"1");
    document.typed(7, 0, u"\n");
    document.typed(8, 0, u"Y");
    EXPECT_EQ(document.text(), "N1 G0X1\rY\rN2\r");
    EXPECT_TRUE(document.changed());
    document.mark_saved();
    const auto sent = document.shared_text();
    document.typed(8, 1, u"");
    document.typed(7, 1, u"");
    EXPECT_EQ(document.undo(), 9U);
    EXPECT_FALSE(document.changed());
    EXPECT_EQ(document.undo(), 7U);
    EXPECT_EQ(document.text(), "N1 G0X1\rN2\r");
    document.undo();
    EXPECT_EQ(document.text(), "N1 G0\rN2\r");
    EXPECT_FALSE(document.can_undo());
    document.redo();
    EXPECT_EQ(document.text(), "N1 G0X1\rN2\r");
    document.typed(0, 0, u"/");
    EXPECT_FALSE(document.can_redo());
    EXPECT_TRUE(document.changed());
    while (document.undo()) {
    }
    EXPECT_TRUE(document.changed()) << "the state saved can no more be reached";
    EXPECT_EQ(*sent, "N1 G0X1\rY\rN2\r") << "what is being sent is not edited";
    EXPECT_FALSE(document.replace(3, 99, ""));
}

TEST(ProgramDocument, WritesInTheProgramsOwnWay) {
    const struct {
        std::string bytes;
        std::size_t at, removed;
        std::u16string added;
        std::string result;
    } cases[] = {
        {"AB", 1, 0, u"\u20AC", "A?B"},  // not in Latin-1
        {"\xC3\xBC", 2, 0, u"\u20AC", "\xC3\xBC\xE2\x82\xAC"},
        {"A\rX\nB", 2, 1, u"", "A\r\nB"},
        {"A\nB", 3, 0, u"\n", "A\nB\n"},
        {"AB", 1, 0, u"\n", "A\r\nB"},
        {"A\rB\n\xA0", 2, 1, u"\u2411", "A\r\x11\n\xA0"},
    };
    for (const auto& c : cases) {
        Program_document document = document_of(c.bytes);
        EXPECT_TRUE(document.typed(c.at, c.removed, c.added));
        EXPECT_EQ(document.text(), c.result);
    }
    EXPECT_FALSE(document_of("AB").typed(0, 1, u"A")) << "nothing is different";
}

TEST(ProgramDocument, AllThatIsTakenBackIsAsItWas) {
    std::mt19937 random(42);
    const auto below = [&random](std::size_t n) { return random() % n; };
    const std::string latin1 = "\r\n\n\rG1X.\xE9\xA0\x80\0\x13"s;
    const std::u16string typed = u"\n\n1Y\u00E9\u20AC"s;
    for (int round = 0; round < 20; ++round) {
        std::string bytes;
        for (std::size_t left = below(round % 10 == 0 ? 12'000 : 40); left > 0; --left) {
            bytes += latin1[below(latin1.size())];
        }
        if (round % 3 == 0) {
            bytes =
                typed_bytes(shown_text(bytes, Text_encoding::latin1), Text_encoding::utf8, "\r\n");
        }
        Program_document document = document_of(bytes);
        for (int edit = 0; edit < 20; ++edit) {
            const Text_view text = document.view();
            const std::size_t length = text.position_of(text.bytes.size());
            const std::size_t at = below(length + 1);
            const std::size_t removed =
                below(std::min<std::size_t>(length - at, 9000) + 1) / (edit % 4 == 0 ? 1 : 500);
            const std::size_t begin = text.offset_of(at);
            if (edit % 5 == 4) {
                document.undo();
            } else {
                document.typed(begin, text.offset_of(at + removed) - begin,
                               typed.substr(below(typed.size()), below(4)));
            }
            const Program_document fresh = document_of(document.text());
            ASSERT_EQ(document.line_count(), fresh.line_count());
            const std::size_t line = below(fresh.line_count() + 1);
            ASSERT_EQ(document.line_start(line), fresh.line_start(line));
            const std::size_t offset = below(fresh.text().size() + 1);
            ASSERT_EQ(document.view().position_of(offset), fresh.view().position_of(offset));
        }
        while (document.undo()) {
        }
        EXPECT_EQ(document.text(), bytes);
    }
}

}  // namespace
}  // namespace kelvane
