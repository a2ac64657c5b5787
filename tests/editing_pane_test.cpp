// The editor pane: what it shows through every transfer, and what becomes of the program in it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// A shop with a program open in the editor.
class Pane : public ::testing::Test {
  protected:
    void open(const std::string& name = "PART.NC") {
        shop.start();
        shop.desk.file_dialog.answers.push_back({File_purpose::open, "/nc/" + name});
        press(Edit_commands::open);
    }
    void press(Edit_commands::Item item) {
        shop.all().edit_commands.refresh();
        shop.all().edit_commands.EditMenuItem[item].click();
    }
    /// Writes a text at the caret.
    void type(std::u16string_view text) { pane().type(text); }
    Program_pane& pane() { return shop.all().pane; }
    Open_program& program() { return shop.all().open_program; }
    std::string shown() { return std::string(pane().text().bytes); }

    Shop_floor shop{{}, "N1 G0\r\nN2 M30\r\n"};
};

TEST_F(Pane, ShowsTheLogAndThenTheProgramAgain) {
    open();
    type(u"/");
    press(Edit_commands::save);
    EXPECT_EQ(shop.file("PART.NC"), "/N1 G0\r\nN2 M30\r\n");

    shop.program("OTHER.NC", "N7\r\nN8\r\n");
    bool sent = false;
    pane().observe([&] {
        if (pane().band()) {
            sent = true;
            EXPECT_EQ(shown(), "N7\r\nN8\r\n");
            EXPECT_TRUE(pane().read_only());
        }
    });
    shop.send("OTHER.NC");
    shop.wait_until_idle();
    EXPECT_TRUE(sent);
    EXPECT_EQ(shown(), "/N1 G0\r\nN2 M30\r\n");
    EXPECT_EQ(program().title(), "PART.NC");
    EXPECT_FALSE(pane().read_only());

    shop.receive_from_machine("NEW.NC", even("%\r\nN9\r\n%"));
    EXPECT_EQ(pane().content(), Program_pane::Content::log) << "what has come is to be read";
    press(Edit_commands::other_content);
    EXPECT_EQ(shown(), "/N1 G0\r\nN2 M30\r\n");
    press(Edit_commands::other_content);
    EXPECT_EQ(pane().content(), Program_pane::Content::log);

    shop.window().FileMenuItem[0].click();  // cancelled
    EXPECT_EQ(shown(), "/N1 G0\r\nN2 M30\r\n");
}

TEST_F(Pane, FollowsTheBlockSentUntilTheOperatorScrolls) {
    open();
    std::vector<std::string> bands;
    for (int i = 1; i < 60; ++i) {
        shop.machine().after(100ms + i * 1ms, [&] {
            if (const auto band = pane().band()) {
                const std::string block(pane().text().bytes.substr(band->begin, band->length));
                if (bands.empty() || bands.back() != block) {
                    bands.push_back(block);
                }
                EXPECT_TRUE(pane().following());
            }
        });
    }
    shop.machine().after(105ms, [&] {
        pane().stop_following();
        EXPECT_TRUE(pane().band_is_away());
        press(Edit_commands::follow);
        EXPECT_FALSE(pane().band_is_away());
    });
    shop.send();
    shop.wait_until_idle();
    EXPECT_THAT(bands, ElementsAre("N1 G0", "N2 M30"));
    EXPECT_FALSE(pane().band());
}

TEST_F(Pane, WhatTheOperatorPutsAsideStaysAsideInATransfer) {
    open();
    shop.receive();
    press(Edit_commands::other_content);
    EXPECT_EQ(pane().content(), Program_pane::Content::program);
    type(u"X");
    EXPECT_EQ(shown(), "N1 G0\r\nN2 M30\r\n") << "nothing is edited in a transfer";
    EXPECT_THAT(pane().note(), HasSubstr("not to be edited"));
    shop.machine().sends(even("%\r\nN9\r\n%"));
    shop.pass(500ms);
    EXPECT_THAT(shop.log(), HasSubstr("Receiving data"));
    EXPECT_EQ(pane().content(), Program_pane::Content::program);
    shop.wait_until_idle();
    EXPECT_EQ(pane().content(), Program_pane::Content::log) << "what has come is to be read";
}

TEST_F(Pane, ChangesAreNeverLostUnasked) {
    open();
    type(u"X");
    const std::string changed = "XN1 G0\r\nN2 M30\r\n";
    const std::string old = "N1 G0\r\nN2 M30\r\n";
    shop.boxes().expect("PART.NC has changes", Message_answer::cancel);
    press(Edit_commands::new_program);
    EXPECT_EQ(shown(), changed);
    shop.boxes().expect("PART.NC has changes", Message_answer::cancel);
    shop.window().close();
    EXPECT_TRUE(shop.window().loaded());

    shop.boxes().expect("Save them before it is sent", Message_answer::cancel);
    shop.menu(0, "PART.NC");
    EXPECT_TRUE(shop.idle());
    shop.boxes().expect("Save them before it is sent", Message_answer::discard);
    shop.send();
    shop.wait_until_idle();
    EXPECT_THAT(shop.received(), AllOf(HasSubstr("N1 G0"), Not(HasSubstr("X"))));
    EXPECT_EQ(shop.file("PART.NC"), old);
    EXPECT_EQ(shown(), changed);

    shop.desk.files.fail("replace", "PART.NC", "No space left on device");
    shop.boxes().expect("PART.NC has changes", Message_answer::save);
    shop.boxes().expect("No space left on device");
    shop.window().close();
    EXPECT_TRUE(shop.window().loaded());
    EXPECT_EQ(shown(), changed);
    shop.desk.files.repair();
    shop.boxes().expect("PART.NC has changes", Message_answer::save);
    shop.window().close();
    EXPECT_FALSE(shop.window().loaded());
    EXPECT_EQ(shop.file("PART.NC"), changed);
}

TEST_F(Pane, FilesThatOthersChange) {
    open();
    shop.program("PART.NC", "N1 by others\r\n");
    type(u"X");
    shop.boxes().expect("has been changed by another program", Message_answer::no);
    press(Edit_commands::save);
    EXPECT_EQ(shop.file("PART.NC"), "N1 by others\r\n");
    EXPECT_TRUE(program().changed());
    shop.boxes().expect("has been changed by another program", Message_answer::yes);
    press(Edit_commands::save);
    EXPECT_EQ(shop.file("PART.NC"), "XN1 G0\r\nN2 M30\r\n");

    type(u"Y");
    shop.desk.files.fail("read", "PART.NC");
    shop.boxes().expect("can no longer be read", Message_answer::no);
    press(Edit_commands::save);
    shop.desk.files.repair();
    shop.desk.files.remove("/nc/PART.NC");
    shop.boxes().expect("is no longer there", Message_answer::yes);
    press(Edit_commands::save);
    EXPECT_EQ(shop.file("PART.NC"), "XYN1 G0\r\nN2 M30\r\n");

    // A resequencing, say, that ends while nothing is changed here.
    shop.program("OTHER.NC", "N1\r\n");
    shop.program("PART.NC", "N5 new\r\n");
    shop.send("OTHER.NC");
    shop.wait_until_idle();
    EXPECT_EQ(shown(), "N5 new\r\n");

    shop.desk.files.fail("read", "OTHER.NC");
    shop.boxes().expect("Cannot read file /nc/OTHER.NC");
    open("OTHER.NC");
    EXPECT_EQ(shown(), "N5 new\r\n");
    shop.desk.file_dialog.answers.push_back({File_purpose::save, "/nc/OTHER.NC"});
    shop.boxes().expect("already exists", Message_answer::no);
    press(Edit_commands::save_as);
    EXPECT_EQ(shop.file("OTHER.NC"), "N1\r\n");
}

TEST_F(Pane, OpensWhatTheCommandLineNamesAndRemembersIt) {
    shop.program("A & B.NC", "N4\r\n");
    shop.start("/nc/A & B.NC");
    EXPECT_EQ(shown(), "N4\r\n");
    EXPECT_EQ(shop.state().IO_device_name, "Mill") << "it is no job";
    open();
    EXPECT_THAT(program().recent(), ElementsAre("/nc/PART.NC", "/nc/A & B.NC"));
    shop.all().edit_commands.refresh();
    EXPECT_EQ(shop.all().edit_commands.RecentMenuItem[1].caption(), "/nc/A && B.NC");
    shop.all().edit_commands.RecentMenuItem[1].click();
    EXPECT_EQ(shown(), "N4\r\n");
    EXPECT_EQ(shop.desk.files.content("/kelvane/Recent programs"),
              "/nc/A & B.NC\r\n/nc/PART.NC\r\n");
}

TEST_F(Pane, ChangesOutliveAnEndThatNobodyIsAskedAbout) {
    open();
    type(u"X");
    shop.all().end_unasked();
    EXPECT_FALSE(shop.window().loaded());
    for (const Message_answer answer : {Message_answer::save, Message_answer::discard}) {
        const bool saves = answer == Message_answer::save;
        Shop_floor next;
        next.program("PART.NC", shop.file("PART.NC"));
        next.desk.files.put("/kelvane/Unsaved program",
                            shop.desk.files.content("/kelvane/Unsaved program"));
        next.start();
        Open_program& program = next.all().open_program;
        EXPECT_EQ(program.document().text(), "XN1 G0\r\nN2 M30\r\n");
        EXPECT_TRUE(program.changed());
        next.boxes().expect("PART.NC has changes", answer);
        if (saves) {
            next.boxes().expect("has been changed by another program", Message_answer::yes);
        }
        next.window().close();
        EXPECT_EQ(next.file("PART.NC"), (saves ? "X" : "") + shop.file("PART.NC"));
        EXPECT_EQ(next.desk.files.content("/kelvane/Unsaved program"), "(missing)");
    }
}

TEST_F(Pane, WhatIsNotEditedIsSavedByteForByte) {
    std::mt19937 random(7);
    for (int round = 0; round < 40; ++round) {
        std::string bytes(random() % 3000, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random() % (round % 2 == 0 ? 256 : 16));
        }
        shop.program("PART.NC", bytes);
        open();
        for (int edit = 0; edit < 8; ++edit) {
            const Program_document& document = program().document();
            program().caret.put(document.view().offset_of(
                random() % (document.view().position_of(bytes.size()) + 1)));
            type(edit % 2 == 0 ? u"G1\n" : u"\u2400X");
        }
        ASSERT_NE(shown(), bytes);
        while (program().document().can_undo()) {
            press(Edit_commands::undo);
        }
        EXPECT_FALSE(program().changed());
        shop.desk.file_dialog.answers.push_back({File_purpose::save, "/nc/COPY.NC"});
        shop.desk.files.remove("/nc/COPY.NC");
        press(Edit_commands::save_as);
        ASSERT_EQ(shop.file("COPY.NC"), bytes) << round;
    }
}

TEST_F(Pane, TheCaretGoesByCharactersWordsAndColumns) {
    using enum Caret_step;
    struct Move {
        std::vector<Caret_step> steps;
        std::size_t place;
    };
    const std::string bytes = "N10 G1X10\r\n\tM8\n\n(AB)";
    shop.program("PART.NC", bytes);
    open();
    const Move moves[] = {
        {{right, right}, 2},
        {{line_end, right}, 11},
        {{line_end, right, left}, 9},
        {{word_right, word_right}, 6},
        {{text_end, word_left}, bytes.find('(')},
        {{line_end, down, down, down}, bytes.size()},
        {{line_end, down, up}, 9},
        {{right, right, down}, 11},  // in the tab
        {{page_down}, bytes.find('(')},
        {{text_end, page_up}, 4},
    };
    for (const Move& move : moves) {
        program().caret.put(0);
        for (const Caret_step step : move.steps) {
            pane().step(step, false, 3);
        }
        EXPECT_EQ(program().caret.place(), move.place) << &move - moves;
    }
    program().caret.select_word(pane().text(), 5);
    EXPECT_EQ(program().caret.begin(), 4U);
    EXPECT_EQ(program().caret.end(), 6U);
    press(Edit_commands::cut);
    EXPECT_EQ(shown().substr(0, 9), "N10 X10\r\n");
    press(Edit_commands::paste);
    press(Edit_commands::paste);
    EXPECT_EQ(shown().substr(0, 13), "N10 G1G1X10\r\n");
    press(Edit_commands::undo);
    EXPECT_EQ(shown(), bytes);
}

TEST_F(Pane, FindsReplacesAndGoesTo) {
    shop.program("PART.NC", "N10 G1 X1\nN20 g1 X10\nN30 (\xFC G1)\n");
    open();
    Find_bar& bar = shop.all().find_bar;
    press(Edit_commands::find);
    EXPECT_TRUE(bar.find_frame.visible());
    bar.find_text.set_text("g1");
    std::vector<std::size_t> found;
    for (int i = 0; i < 4; ++i) {
        bar.find_text.press_enter();
        shop.pass(1ms);
        found.push_back(program().caret.begin());
    }
    EXPECT_THAT(found, ElementsAre(4, 14, 28, 4));
    EXPECT_THAT(bar.result.caption(), HasSubstr("from the start"));
    bar.find_text.set_text("\xC3\xBC");  // as the keyboard gives it
    bar.find_next();
    shop.pass(1ms);
    EXPECT_EQ(program().caret.begin(), 26U);
    bar.find_text.set_text("X1");
    bar.whole_word.set_checked(true);
    bar.replace_text.set_text("X2.5");
    bar.replace_button.click();
    shop.pass(1ms);
    EXPECT_EQ(program().caret.begin(), 7U) << "first it shows what it would replace";
    bar.replace_button.click();
    shop.pass(1ms);
    EXPECT_THAT(shown(), HasSubstr("G1 X2.5\nN20 g1 X10\n"));
    EXPECT_EQ(bar.result.caption(), "Not found");
    bar.whole_word.set_checked(false);
    bar.find_text.set_text("N");
    bar.replace_text.set_text("NN");
    bar.replace_all_button.click();
    EXPECT_EQ(bar.result.caption(), "3 replaced");
    press(Edit_commands::undo);
    EXPECT_THAT(shown(), HasSubstr("\nN20"));

    press(Edit_commands::go_to);
    const struct {
        const char* wanted;
        std::size_t line;
        const char* said;
    } cases[] = {{"2", 1, ""},
                 {"N030", 2, ""},
                 {"99", 3, "The last line"},
                 {"n77", 3, "Not found"},
                 {"x", 3, "Neither"}};
    for (const auto& c : cases) {
        bar.go_to_text.set_text(c.wanted);
        bar.go_to_text.press_enter();
        shop.pass(1ms);
        EXPECT_EQ(pane().text().line_at(program().caret.begin()), c.line) << c.wanted;
        EXPECT_EQ(program().caret.begin(), program().caret.end()) << "nothing is typed over";
        EXPECT_THAT(bar.result.caption(), ::testing::StartsWith(c.said));
    }
    bar.close();
    EXPECT_FALSE(bar.go_to_frame.visible());
}

TEST_F(Pane, ALargeProgramIsThereBeforeAllOfItHasBeenRead) {
    std::string large = "N10 G1 X1.5\r\n" + std::string(51, '-') + "\r\n";
    while (large.size() <= Program_document::max_editable) {
        large += large;
    }
    shop.program("PART.NC", large);
    std::size_t first_seen = 0;
    program().on_change = [&, told = program().on_change] {
        if (program().loading() && first_seen == 0) {
            first_seen = pane().text().line_count();
        }
        told();
    };
    open();
    shop.desk.loop.run_until([&] { return !program().loading(); });
    EXPECT_GT(first_seen, 1000U);
    EXPECT_LT(first_seen, 100'000U);
    type(u"X");
    EXPECT_EQ(shown(), large);
    EXPECT_THAT(pane().note(), HasSubstr("too large to edit"));
    pane().step(Caret_step::text_end, false, 1);
    EXPECT_THAT(pane().note(), HasSubstr(std::to_string(pane().text().line_count()) + " of"));
}

}  // namespace
}  // namespace kelvane::testing
