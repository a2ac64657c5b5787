#include "transmit/sub_files.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"

namespace kelvane {
namespace {

using testing::Memory_files;

TEST(Sub_call, is_told_from_program_text) {
    struct Row {
        const char* line;
        const char* name;  ///< null: program text
        int repeats;
    };
    const Row rows[] = {
        {"CALL SUB.NC", "SUB.NC", 1},
        {"CALL SUB.NC (3 TIMES)", "SUB.NC", 3},
        {"CALL SUB.NC(3TIMES)", "SUB.NC", 3},
        {"CALL SUB.NC ( times 12 )", "SUB.NC", 12},
        {"  N10 /CALL SUB.NC  (3 TIMES) (POCKETS)", "SUB.NC", 3},
        {"/2N 10CALL SUB.NC", "SUB.NC", 1},
        {"CALL MY SUB (1).NC", "MY SUB (1).NC", 1},
        {"CALL \"COPY (2)\" (2 TIMES)", "COPY (2)", 2},
        {"CALL SUB.NC (SOMETIMES)", "SUB.NC", 1},
        {"CALL SUB.NC (9999999 TIMES)", "SUB.NC", 9999999},
        {"CALL SUB.NC (0 TIMES)", "SUB.NC", 0},
        {"CALL SUB.NC (10000000 TIMES)", "SUB.NC", 0},
        {"CALL SUB.NC (99999999999999999999 TIMES)", "SUB.NC", 0},
        {"CALL SUB.NC (TIMES)", "SUB.NC", 0},
        {"CALL SUB.NC (2 TIMES 3)", "SUB.NC", 0},
        {"CALL SUB.NC (2 TIMES) (3 TIMES)", "SUB.NC", 0},
        {"CALL SUB.NC (2 TIMES) M5", "SUB.NC (2 TIMES) M5", 1},
        {"CALL", nullptr, 0},
        {"CALL (3 TIMES)", nullptr, 0},
        {"(CALL THE FOREMAN)", nullptr, 0},
        {"TOOL CALL 3 Z", nullptr, 0},
        {"N10 M98 CALL 7", nullptr, 0},
        {"CALL LBL 3 REP 2", nullptr, 0},
        {"CALL PGM 12", nullptr, 0},
        {"N CALL SUB.NC", nullptr, 0},
    };
    for (const Row& row : rows) {
        const auto call = parse_sub_call(row.line);
        ASSERT_EQ(call.has_value(), row.name != nullptr) << row.line;
        if (call) {
            EXPECT_EQ(*call, (Sub_call{row.name, row.repeats})) << row.line;
        }
    }
}

TEST(Sub_call, leaves_out_what_would_end_the_program) {
    for (const char* line :
         {"M30", "M02", "M2", "N99M30", "G0 Z50 m 002", "/M30 (END)", "%", " % "}) {
        EXPECT_TRUE(left_out_of_sub_file(line)) << line;
    }
    for (const char* line :
         {"M300", "M20", "M03", "M3", "M", "G1 (NO M30)", "M30.5", "ATOM30", "%O1", ""}) {
        EXPECT_FALSE(left_out_of_sub_file(line)) << line;
    }
}

class Sub_files : public ::testing::Test {
  protected:
    void program(const std::string& content) {
        files.put("/kelvane/copy", content);
        reader.open("/kelvane/copy", "/nc/MAIN.NC", "/parts");
    }

    /// All lines, each ended by "|"; the error's text in brackets.
    std::string lines() {
        std::string all;
        std::string line;
        std::uint64_t bytes = 0;
        reader.Get_next_line(Sub_file_reader::reset, line);
        while (reader.Get_next_line(1, line)) {
            all += line + "|";
            bytes += line.size() + 2;
        }
        if (const auto& error = reader.error()) {
            return all + "[" + expansion_error_text(*error) + "]";
        }
        EXPECT_EQ(bytes, reader.total());
        return all;
    }

    std::string expansion() {
        const auto error = reader.check();
        return error ? "[" + expansion_error_text(*error) + "]" : lines();
    }

    Memory_files files;
    Sub_file_reader reader{files};
};

TEST_F(Sub_files, a_program_without_calls_passes_unchanged) {
    struct Row {
        const char* content;
        const char* lines;
    };
    for (const Row& row : {Row{"", ""}, Row{"%\r\nG0 X1\r\n\r\nM30\r\n%", "%|G0 X1||M30|%|"},
                           Row{"A\nB\n", "A|B|"}, Row{"A\rB\r\rC", "A|B||C|"},
                           Row{"A\n\rB\n\r\n\r", "A|B||"}, Row{"A\r\r\nB\r\r\n", "A|B|"}}) {
        program(row.content);
        EXPECT_EQ(expansion(), row.lines) << row.content;
    }
}

TEST_F(Sub_files, calls_are_replaced_and_their_seams_marked) {
    files.put("/nc/A.NC", "%\nA1\nM30\n%\n");
    files.put("/parts/B.NC", "B1\r\nCALL sub/C.NC\r\nB2");
    files.put("/parts/sub/C.NC", "C1\r\nM02\r\n");
    files.put("/parts/A.NC", "WRONG\r\n");
    files.put("/abs/D.NC", "M30\r\n");
    program(
        "%\r\nCALL A.NC (2 TIMES)\r\nM1\r\nCALL B.NC\r\nCALL /abs/D.NC (9999999 TIMES)\r\nM30\r\n");
    const std::string expected =
        "%|(BEGINNING OF SUB FILE A.NC)|A1|A1|(END OF SUB FILE A.NC)|M1|"
        "(BEGINNING OF SUB FILE B.NC)|B1|"
        "(BEGINNING OF SUB FILE sub/C.NC)|C1|(END OF SUB FILE sub/C.NC)|B2|"
        "(END OF SUB FILE B.NC)|"
        "(BEGINNING OF SUB FILE /abs/D.NC)|(END OF SUB FILE /abs/D.NC)|M30|"
        "(END OF MAIN PROGRAM)|";
    EXPECT_EQ(expansion(), expected);
    EXPECT_EQ(lines(), expected) << "the second time, after a reset";
}

TEST_F(Sub_files, tells_where_the_main_programs_own_lines_begin) {
    files.put("/nc/A.NC", "A1\r\n");
    program("X\r\nCALL A.NC\r\n\r\nY\r\n");
    ASSERT_FALSE(reader.check());
    std::string line;
    std::string offsets;
    reader.Get_next_line(Sub_file_reader::reset, line);
    while (reader.Get_next_line(1, line)) {
        offsets += reader.main_offset() ? std::to_string(*reader.main_offset()) + " " : "- ";
    }
    EXPECT_EQ(offsets, "0 - - - 14 16 - ");
}

TEST_F(Sub_files, what_cannot_be_expanded_is_refused_before_the_first_line) {
    files.put("/nc/MAIN.NC", "");
    files.put("/nc/SELF.NC", "G1\nCALL ./SELF.NC\n");
    files.put("/nc/PING.NC", "CALL PONG.NC\n");
    files.put("/nc/PONG.NC", "\n\nCALL PING.NC\n");
    files.put("/nc/HUGE.NC", "CALL HUGE2.NC (9999999 TIMES)\n");
    files.put("/nc/HUGE2.NC", "CALL HUGE3.NC (9999999 TIMES)\n");
    files.put("/nc/HUGE3.NC", "CALL HUGE4.NC (9999999 TIMES)\n");
    files.put("/nc/HUGE4.NC", "G1 X1\n");
    files.put("/nc/BAD.NC", "G1\n");
    files.fail("read", "BAD.NC");
    struct Row {
        const char* line;
        const char* error;
    };
    for (const Row& row :
         {Row{"CALL NONE.NC", "/nc/MAIN.NC\nLine 3\nThe sub-file \"NONE.NC\" was not found."},
          Row{"CALL /nc", "/nc/MAIN.NC\nLine 3\nThe sub-file \"/nc\" was not found."},
          Row{"CALL MAIN.NC", "/nc/MAIN.NC\nLine 3\nThe sub-file \"MAIN.NC\" would call itself."},
          Row{"CALL SELF.NC", "/nc/SELF.NC\nLine 2\nThe sub-file \"./SELF.NC\" would call itself."},
          Row{"CALL PING.NC", "/nc/PONG.NC\nLine 3\nThe sub-file \"PING.NC\" would call itself."},
          Row{"CALL HUGE.NC", "/nc/HUGE.NC\nLine 1\nThe program is too long with its sub-files."},
          Row{"CALL BAD.NC",
              "/nc/MAIN.NC\nLine 3\nThe sub-file \"BAD.NC\" cannot be read. Input/output error"},
          Row{"CALL PONG.NC (0 TIMES)",
              "/nc/MAIN.NC\nLine 3\nThe repeat count must be a whole number from 1 to 9999999, as "
              "in \"(3 TIMES)\"."}}) {
        program("%\r\nG0\r\n" + std::string(row.line) + "\r\n");
        const auto error = reader.check();
        ASSERT_TRUE(error) << row.line;
        EXPECT_EQ(expansion_error_text(*error), row.error);
        std::string line;
        EXPECT_FALSE(reader.Get_next_line(1, line)) << row.line;
    }
    files.remove("/kelvane/copy");
    EXPECT_EQ(reader.check()->file, "/nc/MAIN.NC");
}

TEST_F(Sub_files, nest_seven_deep_whatever_path_led_to_a_file_first) {
    for (int level = 1; level < 8; ++level) {
        files.put("/nc/S" + std::to_string(level), "CALL S" + std::to_string(level + 1) + "\n");
    }
    files.put("/nc/S8", "X\n");
    program("CALL S8\r\nCALL S2\r\n");
    EXPECT_NE(expansion().find("|X|"), std::string::npos);
    program("CALL S2\r\nCALL S1\r\n");
    EXPECT_EQ(expansion(), "[/nc/S7\nLine 1\nSub-files can be nested at most 7 deep.]");
}

TEST_F(Sub_files, repeats_stream_and_are_counted_without_being_walked) {
    files.put("/nc/A", "CALL B (1000000 TIMES)\n");
    files.put("/nc/B", "G1X1\n");
    program("CALL A (1000000 TIMES)\r\n");
    ASSERT_FALSE(reader.check());
    const std::uint64_t seams = 2 * (std::string("(BEGINNING OF SUB FILE A)").size() + 2) - 6;
    EXPECT_EQ(reader.total(), 23U + seams + 1000000 * (seams + 6 * 1000000ULL));
    std::string line;
    reader.Get_next_line(Sub_file_reader::reset, line);
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(reader.Get_next_line(1, line));
    }
    EXPECT_EQ(line, "G1X1");
}

TEST_F(Sub_files, a_file_that_went_or_changed_ends_the_lines_with_an_error) {
    files.put("/nc/A", "A1\n");
    program("G0\r\nCALL A\r\n");
    ASSERT_FALSE(reader.check());
    files.put("/nc/A", "A2\n");
    EXPECT_EQ(lines(),
              "G0|[/nc/MAIN.NC\nLine 2\nThe sub-file \"A\" has changed since the transfer began.]");
}

TEST_F(Sub_files, a_called_tape_image_loses_its_parity_bits) {
    files.put("/nc/A", "\xC7\xB1\xD8\xB1\xB2\x8D\n\xC7\xB1\xD8\xB1\xB2\x8D\n");
    program("CALL A\r\n");
    EXPECT_NE(expansion().find("|G1X12|G1X12|"), std::string::npos);
}

}  // namespace
}  // namespace kelvane
