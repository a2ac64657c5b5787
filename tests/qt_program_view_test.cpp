#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "desktop/program_view.h"
#include "desktop/qt_event_loop.h"
#include "desktop/text_map.h"
#include "qt_test_application.h"

namespace kelvane {
namespace {

TEST(Text_map_test, finds_lines_and_their_bytes) {
    const std::string text = "one\r\ntwo\n\rthree\r\n\r\nlast";
    const Text_map map(text);
    const std::vector<std::string> lines = {"one", "two", "three", "", "last"};
    ASSERT_EQ(map.line_count(), lines.size());
    for (std::size_t line = 0; line < lines.size(); ++line) {
        EXPECT_EQ(map.line(text, line), lines[line]) << line;
        EXPECT_EQ(map.line_at(map.start(line)), line);
        EXPECT_EQ(map.line_at(map.start(line + 1) - 1), line);
    }
    EXPECT_EQ(map.line_at(1000), 4U);
    EXPECT_EQ(Text_map("").line_count(), 1U);
    EXPECT_EQ(Text_map("a\n").line_count(), 2U);
}

TEST(Text_map_test, cuts_endless_lines_between_characters) {
    const std::string text = std::string(4095, 'x') + "\xC3\xA4" + std::string(4096, 'y');
    const Text_map map(text);
    EXPECT_EQ(map.line_count(), 2U);
    EXPECT_EQ(map.start(1), 4097U);
}

/// A view whose selection is compared with what the control asked for.
class Program_view_test : public ::testing::Test {
  protected:
    std::string selected() {
        testing::wait_for(loop, [this] { return !view.refresh_is_pending(); });
        return view.textCursor().selectedText().toStdString();
    }
    Qt_event_loop loop;
    Rich_text text{"Text1", "Program"};
    Program_view view{text};
};

TEST_F(Program_view_test, byte_offsets_select_the_bytes_that_are_meant) {
    const struct {
        const char* name;
        std::string text, wanted;
    } rows[] = {
        {"line ends of two bytes", "N1 G0\r\nN2 G1\r\nN3 M30\r\n", "N3 M30"},
        {"line ends of one byte", "N1 G0\nN2 G1\nN3 M30\n", "N2 G1"},
        {"mixed line ends", "N1\rN2\r\n\nN3", "N3"},
        {"UTF-8", "(FR\xC3\x84SEN \xE2\x82\xAC)\r\nN2 \xC3\x84X", "\xC3\x84X"},
        {"at the very end", "N1\r\nEND", "END"},
    };
    for (const auto& row : rows) {
        text.set_text(row.text);
        text.select(row.text.rfind(row.wanted), row.wanted.size());
        EXPECT_EQ(selected(), row.wanted) << row.name;
    }
    text.set_text("\xC4\xC4\r\n\xC4X");  // Latin-1
    text.select(4, 2);
    EXPECT_EQ(selected(), "\xC3\x84X");
}

TEST_F(Program_view_test, control_characters_are_to_be_seen_and_shift_nothing) {
    text.set_text(std::string("\x12\0%\r\nA\tB\x7F", 9));
    text.select(2, 1);
    EXPECT_EQ(selected(), "%");
    EXPECT_EQ(view.toPlainText(), QStringLiteral("\u2412\u2400%\nA\tB\u2421"));
}

TEST_F(Program_view_test, inserted_text_stands_at_the_caret) {
    text.set_text("old");
    text.insert("new\r\n");
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(view.toPlainText(), "new\nold");
    EXPECT_TRUE(view.part_text().isEmpty());
}

TEST_F(Program_view_test, of_a_very_large_text_the_part_around_the_selection_is_shown) {
    std::string large;
    for (int block = 0; large.size() < 1'500'000; ++block) {
        large += "N" + std::to_string(block) + " G01 X1.5\r\n";
    }
    text.set_text(large);
    EXPECT_EQ(selected(), "");
    EXPECT_LT(view.toPlainText().size(), 200'000);
    EXPECT_FALSE(view.part_text().isEmpty());
    for (const char* block : {"N50000 ", "N25000 ", "N0 ", "N69999 "}) {
        text.select(large.find(block), std::string(block).size());
        EXPECT_EQ(selected(), block);
    }
    text.select(large.size(), 0);
    EXPECT_EQ(selected(), "");
}

}  // namespace
}  // namespace kelvane
