// The dialog, its options file and what its button does to the operator's files.

#include "resequence/resequence_form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frame/main_window.h"
#include "platform/basic_text.h"
#include "resequence/preview.h"
#include "resequence/resequence_run.h"
#include "support/headless_platform.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr const char* rule = "--------------------------------------------------\n";

class Resequencing : public ::testing::Test {
  protected:
    Resequencing() {
        shop.files.folders.insert("/parts");
        window.state.filename = "/parts/PART.NC";
        window.show_text("before");
    }

    /// The program and its working copy, and the dialog in front of them.
    void open(const std::string& program) {
        shop.files.put(window.state.filename, program);
        shop.files.put(copy, program);
        form.show();
    }

    /// Presses "Resequence" and waits for the end.
    void resequence() {
        form.Resequence_button.click();
        shop.loop.run_until([this] { return form.running == 0; });
    }

    [[nodiscard]] std::string file(const std::string& path) const {
        return shop.files.content(path);
    }

    kelvane::testing::Headless_platform shop;
    Kelvane_lite_form window{shop.platform};
    resequence_form_lite form{shop.platform, window.control};
    Resequence_run run{shop.platform, window, window.control, window.state, form};

    const std::string options_file = shop.files.program_path("\\Reseqence data");
    const std::string copy = shop.files.program_path("\\scratchpad data 5");
    const std::string staged = shop.files.program_path("\\scratchpad data 6");
};

constexpr const char* default_options =
    "0\r\n0\r\n 0 \r\n 0 \r\n 0 \r\n 0 \r\n 1 \r\n 1 \r\n 1 \r\n10\r\n10\r\n 1 \r\n3\r\n 3 \r\n"
    " 0 \r\n\r\nN\r\n 0 \r\n 0 \r\n 0 \r\n 0 \r\n";

TEST_F(Resequencing, options_are_kept_but_the_maximum) {
    form.load();
    form.close();
    EXPECT_EQ(file(options_file), default_options);
    form.load();
    form.chk_gotos.set_checked(false);
    form.Maximum_txt.set_text("9990");
    form.chk_t_codes.set_value(2);
    form.Chk_HwithW.set_checked(true);
    form.N_character_txt.set_text("BN ");
    form.Add_to_txt.set_text("\" M8 ");
    form.unload();
    const std::string written = file(options_file);
    form.load();
    EXPECT_EQ(form.Maximum_txt.text(), "");
    EXPECT_EQ(form.chk_t_codes.value(), 2);
    EXPECT_EQ(form.N_character_txt.text() + "|" + form.Add_to_txt.text(), "BN |\" M8 ");
    form.unload();
    EXPECT_TRUE(file(options_file) == written && written != default_options);
}

TEST_F(Resequencing, reads_what_other_hands_wrote) {
    const struct {
        std::string part, by;  // of the default file, what is replaced and by what
        std::string expected;  // start, character, added text, digits, "H" and gotos boxes
    } cases[] = {
        {"", "", "10|N||3|0|1"},
        {"\r\nN\r\n", "\r\n1\r\n", "10|N||3|0|1"},  // a check box as the character
        {"\r\nN\r\n", "\r\n 1 \r\n", "10|N||3|0|1"},
        {" 0 \r\n\r\nN", " 0 \r\nA,H\r\nN", "10|H|A|3|0|1"},  // a comma ends a field
        {"\r\n\r\nN", "\n \"A,\"M \nBN", "10|\"M | \"A|3|0|1"},
        {"\r\n\r\nN", "\r\n\"A, M\",\" B\"\r\nN", "10| B|A, M|3|0|1"},
        {"\r\n3\r\n", "\r\n12\r\n", "10|N||12|0|1"},
        {default_options, "0,0,1,1,1,1,1,0", "10|N||3|0|0"},
        {default_options, "\xFF\r\n\"\r\n,,,,,,,,,", "|N||3|0|0"},
    };
    for (const auto& c : cases) {
        std::string content = default_options;
        shop.files.put(options_file, content.replace(content.find(c.part), c.part.size(), c.by));
        form.load();
        EXPECT_EQ(form.start_txt.text() + "|" + form.N_character_txt.text() + "|" +
                      form.Add_to_txt.text() + "|" + form.digits_txt.text() + "|" +
                      decimal(form.Chk_HwithW.value()) + "|" + decimal(form.chk_gotos.value()),
                  c.expected)
            << c.by;
        form.unload();
    }
}

TEST_F(Resequencing, controls_move_each_other) {
    form.load();
    form.VScroll1.set_value(5);
    EXPECT_EQ(form.digits_txt.text(), "5");
    form.digits_txt.set_text("12");
    EXPECT_EQ(form.VScroll1.value(), 8);
    EXPECT_EQ(form.digits_txt.text(), "12");
    EXPECT_TRUE(form.start_txt.accepts_key('5') && !form.start_txt.accepts_key('-'));
    form.chk_gotos.click();
    form.Maximum_txt.set_text("12345678901");
    EXPECT_EQ(form.options().maximum, 12345678901);
    form.chk_gotos.click();
    EXPECT_EQ(form.Maximum_txt.text(), "");
}

TEST_F(Resequencing, shows_what_will_become) {
    open("%\r\nN1G0\r\nGOTO1\r\n");
    EXPECT_THAT(form.preview_before.items(), ElementsAre("%", "N1G0", "GOTO1"));
    EXPECT_THAT(form.preview_after.items(), ElementsAre("%", "N010 G0", "N020 GOTO010 "));
    form.Maximum_txt.set_text("99");
    EXPECT_EQ(form.preview_note.caption(),
              "Can't set maximum N# when resequencing GOTO statements");
    form.chk_gotos.click();
    form.chk_add_space.click();
    EXPECT_THAT(form.preview_after.items(), ElementsAre("%", "N010G0", "N020GOTO1"));
    EXPECT_EQ(form.preview_note.caption(), "");
    form.unload();

    open("GOTO5\n" + std::string(quick_preview_length, 'X') + "\nN5Y\n");
    EXPECT_THAT(form.preview_after.items(), ElementsAre("N010GOTO5", HasSubstr("XXX..."), "N030Y"));
    form.chk_gotos.click();
    EXPECT_THAT(form.preview_note.caption(), HasSubstr("still being looked at"));
    form.chk_add_space.click();
    shop.loop.run_until([this] { return form.preview_note.caption().empty(); });
    EXPECT_THAT(form.preview_after.items(),
                ElementsAre("N010 GOTO030 ", HasSubstr("XXX..."), "N030 Y"));
    form.chk_gotos.click();
    form.close();
    shop.loop.run_for(std::chrono::seconds(1));
}

TEST_F(Resequencing, warns_before_the_button_is_pressed) {
    const struct {
        const char *start, *increment, *maximum;
        bool gotos;
        const char *program, *note;
    } cases[] = {
        {"10", "10", "", true, "N1\n[X]\nN2", ""},
        {"10", "0", "", true, "N1", "The increment is 0 or empty: "},
        {"10", "", "10", false, "N1", "The increment is 0 or empty: "},
        {"11", "1", "10", false, "N1", "The start is above the maximum N#: "},
        {"400", "10", "409", false, "N1", "The second number is above the maximum N#: "},
        {"400", "10", "410", false, "N1", ""},
        {"10", "1", "", true, "N1\nN2GOTO1GOTO8\nGOTO9", "Line 2: Cannot resolve GOTO8 with"},
        {"10", "1", "", false, "[X]\nN1\n [\n[\nX]", ""},
        {"10", "1", "", false, "[X]\nN1\n\nN2[A]B\nN3", R"(Line 4: this "[" is never closed: )"},
        {"10", "0", "", true, "[\nGOTO9", "never"},
    };
    const std::string long_line = "\n(" + std::string(quick_preview_length, 'X') + ")";
    for (std::size_t row = 0; row < 2 * std::size(cases); ++row) {
        const auto& c = cases[row / 2];
        open(c.program + (row % 2 == 0 ? "" : long_line));
        form.chk_gotos.set_checked(c.gotos);
        form.start_txt.set_text(c.start);
        form.increment_txt.set_text(c.increment);
        form.Maximum_txt.set_text(c.maximum);
        const std::string& note = form.preview_note.caption();
        const auto looked_at = [&note] { return note.find("looked at") == std::string::npos; };
        shop.loop.run_until(looked_at);
        EXPECT_THAT(note, HasSubstr(c.note)) << c.program;
        EXPECT_EQ(note.empty(), *c.note == '\0') << note;
        EXPECT_EQ(std::count(note.begin(), note.end(), '\n'),
                  c.program[0] == '[' && c.gotos ? 2 : 0);
        form.chk_comments2.set_checked(true);
        shop.loop.run_until(looked_at);
        EXPECT_EQ(note.find("never"), std::string::npos);
        form.unload();
        shop.files.remove(options_file);
    }
}

TEST_F(Resequencing, puts_the_result_in_the_place_of_the_file) {
    shop.files.put("/parts/PART.bak", "an older one");
    open("N1G0X1\r\nGOTO1\r\n");
    resequence();
    EXPECT_EQ(file("/parts/PART.NC"), "N010 G0X1\r\nN020 GOTO010 \r\n");
    EXPECT_EQ(file("/parts/PART.bak"), "N1G0X1\r\nGOTO1\r\n");
    EXPECT_EQ(window.Text1.text(),
              std::string("File /parts/PART.NC has been resequenced.\n"
                          "The original file in now named '/parts/PART.bak'.\n") +
                  rule + "N010 G0X1\r\nN020 GOTO010 \r\n");
    EXPECT_FALSE(shop.files.exists(copy) || shop.files.exists(staged));
    EXPECT_FALSE(form.loaded() || shop.windows.hourglass);
    EXPECT_EQ(shop.desktop.beeps, 1);
}

TEST_F(Resequencing, a_failure_leaves_the_original_whole_and_says_so) {
    const struct {
        const char *operation, *path_end, *said, *backup;
    } cases[] = {
        {"read", "data 5", "working copy cannot be read", "old"},
        {"replace", "data 6", "cannot be written to", "old"},
        {"copy", "PART.bak", "Its backup '/parts/PART.bak' cannot be written", "old"},
        {"replace", "PART.NC", "Its backup is '/parts/PART.bak'", "N1X\r\n"},
    };
    for (const auto& c : cases) {
        shop.files.put("/parts/PART.bak", "old");
        open("N1X\r\n");
        shop.files.fail(c.operation, c.path_end);
        resequence();
        shop.files.repair();
        EXPECT_EQ(file("/parts/PART.NC"), "N1X\r\n") << c.path_end;
        EXPECT_EQ(file("/parts/PART.bak"), c.backup) << c.path_end;
        EXPECT_TRUE(shop.files.exists(copy)) << c.path_end;
        EXPECT_THAT(window.Text1.text(), HasSubstr(c.said));
        EXPECT_FALSE(form.visible());
    }
}

TEST_F(Resequencing, a_refusal_is_said_in_a_box_and_the_dialog_stays) {
    open("N1X\r\nGOTO2\r\n");
    for (const std::string text : {"Cannot resolve GOTO2\nwith an existing N-number.",
                                   "Can't set maximum N# when\nresequencing GOTO statements"}) {
        shop.boxes.expect(text, Message_answer::ok,
                          [this] { EXPECT_FALSE(shop.windows.hourglass); });
        resequence();
        EXPECT_EQ(shop.boxes.shown().back().text, text);
        EXPECT_EQ(shop.boxes.shown().back().title, "Resequence error");
        EXPECT_TRUE(form.visible() && !shop.files.exists("/parts/PART.bak"));
        form.Maximum_txt.set_text("50");
    }
    form.chk_gotos.click();
    resequence();
    EXPECT_EQ(file("/parts/PART.NC"), "N010 X\r\nN020 GOTO2\r\n");
}

TEST_F(Resequencing, stops_when_asked_and_starts_only_once) {
    std::string program;
    for (int line = 0; line < 20'000; ++line) {
        program += "N1G1X1\r\n";
    }
    const std::function<void()> stops[] = {[this] { window.Stop_button.click(); },
                                           [this] { form.Cancel_button.click(); }};
    for (const auto& stop : stops) {
        window.control.begin_stoppable_work();
        open(program);
        int presses = 0;
        shop.loop.after({}, [&] {
            EXPECT_TRUE(form.visible());
            EXPECT_TRUE(shop.windows.hourglass);
            form.Resequence_button.click();  // a second run must not begin inside the first
            ++presses;
            stop();
        });
        resequence();
        EXPECT_EQ(presses, 1);
        EXPECT_EQ(file("/parts/PART.NC"), program);
        EXPECT_EQ(window.Text1.text(), "before");
        EXPECT_FALSE(form.visible());
    }
    EXPECT_EQ(shop.desktop.beeps, 2);
}

}  // namespace
}  // namespace kelvane
