// Send from a block and Compare, from the menu to the wire.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr const char* part =
    "%\r\nO7\r\nN10 G90 G21 G17 G54\r\nN20 T1 M6\r\nN30 S900 M3\r\nN40 G0 X0. Y0. Z5.\r\n"
    "N50 G1 Z-1. F100\r\nN60 X10.\r\nN70 Y10.\r\nN80 M30\r\n%\r\n";
constexpr const char* rest = "N70 Y10.\r\nN80 M30\r\n%\r\n";

class Tools : public Shop_floor {
  public:
    using Shop_floor::Shop_floor;

    void open(const std::string& name) {
        if (!name.empty()) {
            start();
            all().edit_commands.open_file("/nc/" + name);
            desk.loop.run_until([this] { return window().tasks.empty(); });
        }
    }
    /// Tools > Send from a block, on /nc/PART.NC; `act` runs when all has been worked out.
    void send_from_block(std::function<void()> act) {
        start();
        if (state().filename.empty()) {
            state().filename = "/nc/PART.NC";
        }
        desk.windows.when_shown("Start_form",
                                [this, act = std::move(act)] { desk.loop.after(1s, act); });
        window().ToolsMenuItem[4].click();
        desk.loop.run_until([this] { return window().tasks.empty(); });
    }
    /// The place and "Send from here", then the machine's Xon.
    void send_from(const std::string& place, const std::string& lead_in) {
        send_from_block([this, place, lead_in] {
            form().Line_txt.set_text(place);
            desk.loop.after(1s, [this, lead_in] {
                form().Lead_in_txt.set_text(lead_in);
                form().Send_button.click();
                machine().after(1s, [this] {
                    EXPECT_EQ(received(), "");
                    machine().sends(xon);
                });
            });
        });
    }
    std::string transfer_log() const {
        return desk.files.content(desk.files.program_path(file_names::transfer_log));
    }
    Start_form& form() { return all().start_form; }
    Compare_form& comparing() { return all().compare_form; }
};

TEST(SendFromABlock, PutsTheLeadInAndTheRestOnTheWireAsAWholeSendWould) {
    const struct {
        const char* what;
        Setting_lines lines;
        std::string part, place, lead_in, wire;
    } cases[] = {
        {"a line", {}, part, "9", "%\n(TAKE CARE)", "%\r\n(TAKE CARE)\r\n" + std::string(rest)},
        {"a block, no lead-in", {}, part, "N070", "", rest},
        {"tape code, end of block, leader, trailer, filter",
         {{4, " 0"}, {6, " 0"}, {7, "<LF"}, {8, ">"}, {24, "N80"}},
         part,
         "n70",
         "M3\nG4\n",
         even("<\nM3\nG4\nN70 Y10.\n%\n>")},
        {"a called file",
         {},
         "G90\nG0X1\nCALL B.NC\nM30\n",
         "3",
         "M3",
         "M3\r\n(BEGINNING OF SUB FILE B.NC)\r\nX5\r\n(END OF SUB FILE B.NC)\r\nM30\r\n"
         "(END OF MAIN PROGRAM)\r\n"},
        {"line ends and Ctrl-Z", {}, "G0\rG1\rG2\r\x1A", "2", "M3", "M3\r\nG1\r\nG2\r\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Tools shop(c.lines, c.part);
        shop.program("B.NC", "X5\nM30\n");
        shop.send_from(c.place, c.lead_in);
        EXPECT_EQ(shop.received(), c.wire);
        EXPECT_TRUE(shop.idle());
        for (const std::string& said : {shop.status(), shop.log(), shop.transfer_log()}) {
            EXPECT_THAT(said, HasSubstr(" from line "));
        }
        EXPECT_EQ(shop.scratch(), "(missing)");
        EXPECT_EQ(shop.file("PART.NC"), c.part);
    }
}

TEST(SendFromABlock, ShowsTheBlocksTheStateTheWarningsAndAProposal) {
    Tools shop({}, part);
    shop.send_from_block([&] {
        Start_form& form = shop.form();
        form.Line_txt.set_text("N60");
        shop.desk.loop.after(1s, [&] {
            EXPECT_EQ(form.Blocks_lst.selected_text(), "     8  N60 X10.");
            EXPECT_THAT(form.State_lst.items(), ::testing::Contains("Motion: G1, line 7"));
            EXPECT_THAT(form.Lead_in_txt.text(), HasSubstr("G0 X0. Y0."));
            EXPECT_FALSE(form.Machining_frame.visible());
            form.Blocks_lst.choose(0);
            EXPECT_EQ(form.Line_txt.text(), "2");
            form.Line_txt.set_text("N999");
            shop.desk.loop.after(1s, [&] {
                EXPECT_EQ(form.start_hint.caption(), "N999 is not in the program.");
                EXPECT_FALSE(form.Send_button.enabled());
                form.close();
            });
        });
    });
    EXPECT_FALSE(shop.machine().is_open());
    EXPECT_EQ(shop.received(), "");
}

TEST(SendFromABlock, AsksMillOrLatheWhereTheProgramDoesNotSay) {
    Tools shop({}, "G0 X1.\nG1 Z2. F9\nX3.\n");
    shop.send_from_block([&] {
        Start_form& form = shop.form();
        EXPECT_TRUE(form.Machining_frame.visible());
        EXPECT_THAT(form.Warnings_lst.items(), Each(HasSubstr("line ")));
        EXPECT_FALSE(form.Mill_option.value() || form.Lathe_option.value());
        form.Line_txt.set_text("2");
        form.Lathe_option.click();
        shop.desk.loop.after(1s, [&] {
            EXPECT_TRUE(form.Machining_frame.visible());
            EXPECT_THAT(form.Lead_in_txt.text(), HasSubstr("INSIDE OR OUTSIDE"));
            form.close();
        });
    });
}

TEST(SendFromABlock, ABrokenSendNamesTheLastBlockThatHasLeftAndOffersIt) {
    const std::string up_to_60 = std::string(part).substr(0, std::string(part).find("N70"));
    const struct {
        const char* what;
        std::size_t bytes;
        const char* note;
        const char* line;
        std::string open = {}, then_open = {};
    } cases[] = {
        {"in the middle of a block", up_to_60.size() + 5, "line 8, N60 X10.", "8"},
        {"of the program in the editor", up_to_60.size() + 5, "line 8", "8", "PART.NC"},
        {"beside another in the editor", up_to_60.size() + 5, "line 8", "8", "OTHER.NC"},
        {"before another is opened", up_to_60.size() + 5, "line 8", "1", "", "OTHER.NC"},
        {"before the first block is whole", 2, "No block has left", "1"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Tools shop({}, part);
        shop.program("OTHER.NC", part);
        shop.open(c.open);
        shop.machine().after_bytes(c.bytes, [&] {
            shop.window().Stop_button.click();
            shop.window().Stop_button.click();
        });
        shop.send();
        EXPECT_THAT(shop.status(), HasSubstr(c.note));
        shop.open(c.then_open);
        shop.send_from_block([&] {
            EXPECT_EQ(shop.form().Line_txt.text(), c.line);
            shop.form().close();
        });
    }
}

TEST(SendFromABlock, AStopInThePartNamesTheProgramsLine) {
    Tools shop({}, part);
    shop.machine().after_bytes(20, [&] {
        shop.window().Stop_button.click();
        shop.window().Stop_button.click();
    });
    shop.send_from("9", "M3\nM8");
    EXPECT_THAT(shop.status(), HasSubstr("line 9, N70 Y10."));
}

TEST(SendFromABlock, WaitsForTheEndOfARunningTransfer) {
    Tools shop({}, part);
    shop.receive();
    shop.desk.windows.when_shown("Start_form", [&] {
        shop.desk.loop.after(1s, [&] {
            shop.form().Send_button.click();
            EXPECT_THAT(shop.form().start_hint.caption(), HasSubstr("A transfer is on"));
            shop.form().close();
            shop.window().Stop_button.click();
        });
    });
    shop.state().filename = "/nc/PART.NC";
    shop.window().ToolsMenuItem[4].click();
    shop.desk.loop.run_until([&] { return shop.window().tasks.empty(); });
    EXPECT_EQ(shop.received(), "");
}

TEST(Compare, ShowsAReceivedProgramBesideWhatWasThere) {
    Tools shop({}, "N1 G0\r\nN2 X1\r\nN3 M30\r\n");
    shop.boxes().expect("Overwrite", Message_answer::yes);
    shop.receive_from_machine("PART.NC", "N1 G0\r\nN2 X2\r\nN9 M 30\r\nN10 M1\r\n");
    EXPECT_THAT(shop.status(), HasSubstr("Tools, Compare"));
    Compare_form& form = shop.comparing();
    shop.desk.windows.when_shown("Compare_form", [&] {
        shop.desk.loop.after(1s, [&] {
            EXPECT_EQ(form.left_label.caption(), "/nc/PART.NC before the receive");
            EXPECT_THAT(form.Left_lst.items(), ElementsAre("      1  N1 G0", ">     2  N2 X1",
                                                           ">     3  N3 M30", ">", "      4  "));
            EXPECT_THAT(form.Right_lst.items(),
                        ElementsAre("      1  N1 G0", ">     2  N2 X2", ">     3  N9 M 30",
                                    ">     4  N10 M1", "      5  "));
            EXPECT_EQ(form.count_label.caption(), "1 difference; number 1");
            form.chk_ignore_numbers.click();
            form.chk_ignore_blanks.click();
            shop.desk.loop.after(1s, [&] {
                EXPECT_EQ(form.count_label.caption(), "2 differences; number 1");
                form.Next_button.click();
                EXPECT_EQ(form.Right_lst.selected_text(), ">     4  N10 M1");
                EXPECT_EQ(form.count_label.caption(), "2 differences; number 2");
                form.Next_button.click();
                form.Previous_button.click();
                EXPECT_EQ(form.Left_lst.selected_text(), ">     2  N2 X1");
                form.close();
            });
        });
    });
    shop.window().ToolsMenuItem[5].click();
    shop.desk.loop.run_until([&] { return shop.window().tasks.empty(); });
}

TEST(Compare, OfChosenFilesShowsWhatLiesAroundTheDifferences) {
    std::string many;
    for (int line = 1; line <= 40; ++line) {
        many += "X" + std::to_string(line) + "\n";
    }
    Tools shop({}, many);
    std::string other = many;
    other.replace(other.find("X20\n"), 4, "");
    shop.program("OTHER.NC", other);
    shop.start();
    shop.state().filename = "/nc/PART.NC";
    Compare_form& form = shop.comparing();
    shop.desk.windows.when_shown("Compare_form", [&] {
        EXPECT_EQ(form.count_label.caption(), "Choose the program to compare with.");
        EXPECT_FALSE(form.Received_button.enabled());
        shop.desk.file_dialog.answers.push_back({File_purpose::open, "/nc/GONE.NC"});
        form.Right_button.click();
        shop.desk.loop.after(1s, [&] {
            EXPECT_THAT(form.count_label.caption(), HasSubstr("/nc/GONE.NC cannot be read."));
            shop.desk.file_dialog.answers.push_back({File_purpose::open, "/nc/OTHER.NC"});
            form.Right_button.click();
            shop.desk.loop.after(1s, [&] {
                EXPECT_EQ(form.Left_lst.items().size(), 8U);
                EXPECT_EQ(form.Left_lst.items().front(), "...");
                EXPECT_EQ(form.Left_lst.selected_text(), ">    20  X20");
                EXPECT_EQ(form.Right_lst.selected_text(), ">");
                form.close();
            });
        });
    });
    shop.window().ToolsMenuItem[5].click();
    shop.desk.loop.run_until([&] { return shop.window().tasks.empty(); });
}

}  // namespace
}  // namespace kelvane::testing
