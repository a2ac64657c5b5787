#include "transmit/sub_files.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"

namespace kelvane {
namespace {

using testing::Memory_files;

TEST(Sub_call, is_told_from_program_text) {
    const struct {
        const char *line, *name;
        int repeats;
    } rows[] = {
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
    };
    for (const auto& row : rows) {
        EXPECT_EQ(parse_sub_call(row.line), (Sub_call{row.name, row.repeats})) << row.line;
    }
    for (const char* line :
         {"CALL", "CALL (3 TIMES)", "(CALL THE FOREMAN)", "TOOL CALL 3 Z", "N10 M98 CALL 7",
          "CALL LBL 3 REP 2", "CALL PGM 12", "N CALL SUB.NC"}) {
        EXPECT_FALSE(parse_sub_call(line)) << line;
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
        reader.open(std::make_shared<const std::string>(content), "/nc/MAIN.NC", "/parts");
    }

    /// All lines, each ended by "|"; the error's text in brackets.
    std::string lines() {
        std::string all;
        std::string line;
        std::uint64_t bytes = 0;
        offsets.clear();
        reader.Get_next_line(Sub_file_reader::reset, line);
        while (reader.Get_next_line(1, line)) {
            all += line + "|";
            bytes += line.size() + 2;
            offsets += reader.main_offset() ? std::to_string(*reader.main_offset()) + " " : "- ";
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
    std::string offsets;  ///< of each line that is the main program's own
};

TEST_F(Sub_files, a_program_without_calls_passes_unchanged) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"%\r\nG0 X1\r\n\r\nM30\r\n%", "%|G0 X1||M30|%|"},
        {"A\nB\n", "A|B|"},
        {"A\rB\r\rC", "A|B||C|"},
        {"A\n\rB\n\r\n\r", "A|B||"},
        {"A\n\r\rB\n\r\r\n\r\r", "A|B||"},
        {"A\r\r\nB\r\r\n", "A|B|"},
        {"A\r\nG0X1\rG1\r\n\rB\nC", "A|G0X1|G1||B|C|"},
        {"A\r\n%\r\n\x1A\x1A", "A|%|"},
        {"A\x1A\r\nB\x1A", "A\x1A|B|"},
    };
    for (const auto& [content, wanted] : rows) {
        program(content);
        EXPECT_EQ(expansion(), wanted) << content;
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
        "(BEGINNING OF SUB FILE B.NC)|B1|(BEGINNING OF SUB FILE sub/C.NC)|C1|"
        "(END OF SUB FILE sub/C.NC)|B2|(END OF SUB FILE B.NC)|(BEGINNING OF SUB FILE /abs/D.NC)|"
        "(END OF SUB FILE /abs/D.NC)|M30|(END OF MAIN PROGRAM)|";
    EXPECT_EQ(expansion(), expected);
    EXPECT_EQ(lines(), expected) << "the second time, after a reset";
    EXPECT_EQ(offsets, "0 - - - - 24 - - - - - - - - - 71 - ") << "of the program's own lines";
}

TEST_F(Sub_files, the_main_programs_end_is_said_before_its_closing_tape_mark) {
    files.put("/nc/A", "A1\n\x1A");
    const std::string calls = "(BEGINNING OF SUB FILE A)|A1|(END OF SUB FILE A)|";
    const std::string end = "(END OF MAIN PROGRAM)|";
    const std::pair<const char*, std::string> rows[] = {
        {"%\r\nCALL A\r\nM30\r\n%\r\n", "%|" + calls + "M30|" + end + "%|"},
        {"%\nCALL A\n%\n\n \n", "%|" + calls + end + "%|| |"},
        {"CALL A\n%\nM30\n%\n%END\n\x1A", calls + "%|M30|" + end + "%|%END|"},
        {"%\nCALL A\n", "%|" + calls + end},
        {"%\nCALL A\n%\nM30", "%|" + calls + "%|M30|" + end},
        {"%\nM30\n%\n", "%|M30|%|"},
    };
    for (const auto& [content, wanted] : rows) {
        program(content);
        EXPECT_EQ(expansion(), wanted);
        EXPECT_EQ(lines(), wanted) << "again, after a reset";
    }
}

TEST_F(Sub_files, a_name_neither_closes_the_seam_comment_nor_leads_to_the_current_directory) {
    files.put("/nc/A (1) 50%.NC", "A1\n");
    program("CALL A (1) 50%.NC\n");
    EXPECT_EQ(expansion(),
              "(BEGINNING OF SUB FILE A -1- 50-.NC)|A1|(END OF SUB FILE A -1- 50-.NC)|"
              "(END OF MAIN PROGRAM)|");
    files.put("A.NC", "in the current directory");
    reader.open(std::make_shared<const std::string>("CALL A.NC\n"), "/nc/MAIN.NC", "");
    EXPECT_EQ(expansion(), "[/nc/MAIN.NC\nLine 1\nThe sub-file \"A.NC\" was not found.]");
}

TEST_F(Sub_files, are_read_once_and_compared_with_what_was_checked) {
    files.put("/nc/KEPT", std::string(kept_sub_file_bytes - 3, 'X'));
    files.put("/nc/LARGE", "L1\n\n");
    files.put("/nc/SMALL", "S1\n");
    program("CALL KEPT\nCALL SMALL\nCALL LARGE\n");
    ASSERT_FALSE(reader.check());
    files.fail("read", "KEPT");
    files.put("/nc/SMALL", "S1\n");
    EXPECT_NE(lines().find("|S1|(END OF SUB FILE SMALL)|(BEGINNING OF SUB FILE LARGE)|L1|"),
              std::string::npos);
    files.put("/nc/LARGE", "L2\n\n");
    EXPECT_TRUE(lines().ends_with(
        "[/nc/MAIN.NC\nLine 3\nThe sub-file \"LARGE\" has changed since the transfer began.]"));
    files.fail("read", "LARGE");
    EXPECT_TRUE(lines().ends_with("\"LARGE\" can no longer be read. Input/output error]"));
    files.put("/nc/SMALL", "S2\n");
    EXPECT_TRUE(
        lines().ends_with("Line 2\nThe sub-file \"SMALL\" has changed since the "
                          "transfer began.]"));
    files.remove("/nc/SMALL");
    EXPECT_TRUE(lines().ends_with("\"SMALL\" can no longer be read. No such file or directory]"));
}

TEST_F(Sub_files, what_cannot_be_expanded_is_refused_before_the_first_line) {
    const std::pair<const char*, const char*> programs[] = {
        {"/nc/MAIN.NC", ""},
        {"/nc/SELF.NC", "G1\nCALL ./SELF.NC\n"},
        {"/nc/PING.NC", "CALL PONG.NC\n"},
        {"/nc/PONG.NC", "\n\nCALL PING.NC\n"},
        {"/nc/HUGE.NC", "CALL HUGE2.NC (9999999 TIMES)\n"},
        {"/nc/HUGE2.NC", "CALL HUGE3.NC (9999999 TIMES)\n"},
        {"/nc/HUGE3.NC", "CALL HUGE4.NC (9999999 TIMES)\n"},
        {"/nc/HUGE4.NC", "G1 X1\n"},
        {"/nc/BAD.NC", "G1\n"},
    };
    for (const auto& [name, content] : programs) {
        files.put(name, content);
    }
    files.fail("read", "BAD.NC");
    const std::pair<const char*, const char*> rows[] = {
        {"NONE.NC", "MAIN.NC\nLine 3\nThe sub-file \"NONE.NC\" was not found."},
        {"/nc", "MAIN.NC\nLine 3\nThe sub-file \"/nc\" was not found."},
        {"MAIN.NC", "MAIN.NC\nLine 3\nThe sub-file \"MAIN.NC\" would call itself."},
        {"SELF.NC", "SELF.NC\nLine 2\nThe sub-file \"./SELF.NC\" would call itself."},
        {"PING.NC", "PONG.NC\nLine 3\nThe sub-file \"PING.NC\" would call itself."},
        {"HUGE.NC", "HUGE.NC\nLine 1\nThe program is too long with its sub-files."},
        {"BAD.NC", "MAIN.NC\nLine 3\nThe sub-file \"BAD.NC\" cannot be read. Input/output error"},
        {"PONG.NC (0 TIMES)",
         "MAIN.NC\nLine 3\nThe repeat count must be a whole number from 1 to 9999999, as in \"(3 "
         "TIMES)\"."},
    };
    for (const auto& [call, error] : rows) {
        program("%\r\nG0\r\nCALL " + std::string(call) + "\r\n");
        EXPECT_EQ(expansion(), "[/nc/" + std::string(error) + "]");
        std::string line;
        EXPECT_FALSE(reader.Get_next_line(1, line)) << call;
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
}

TEST_F(Sub_files, a_called_tape_image_loses_its_parity_bits) {
    files.put("/nc/A", "G\xB1\xD8\xB1\xB2\x8D\nG\xB1\xD8\xB1\xB2\x8D\n");
    program("CALL A\r\n");
    EXPECT_NE(expansion().find("|G1X12|G1X12|"), std::string::npos);
}

}  // namespace
}  // namespace kelvane
