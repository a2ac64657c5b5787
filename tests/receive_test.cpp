// Receives on the scripted machine, from the first byte to the saved file.

#include <gtest/gtest.h>

#include "frame/file_names.h"
#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;

TEST(Receive, SavesWhatTheMachinePunchesInEveryCode) {
    struct Case {
        const char* what;
        std::initializer_list<std::pair<int, std::string>> lines;
        std::string wire;
        std::string saved;
    };
    const std::string text = "%\r\nO1\r\nG0X1\r\n";
    const Case cases[] = {
        {"no parity", {}, text, text},
        {"even parity, recognised by CR", {{4, " 0"}}, even(text), text},
        {"odd parity, recognised by CR", {{4, " 1"}}, odd(text), text},
        {"even parity, set by hand", {{4, " 0"}, {13, "NO"}}, even(text), text},
        {"LF machine", {{6, " 0"}}, "%\nO1\nG0X1\n", text},
        {"EIA, recognised, capitals", {{4, " 3"}}, eia_code("%\nO1\ng0x1\n"), text},
        {"EIA, set by hand", {{4, " 3"}, {13, "NO"}}, eia_code("%\nO1\nG0X1\n"), text},
        {"recognised although the record says EIA", {{4, " 3"}}, text, text},
        {"before first and after last end of block",
         {{9, "YES"}, {10, "YES"}},
         "junk\r\n" + text + "rest",
         text},
        {"unfinished line kept", {}, text + "rest", text + "rest"},
        {"receive mask", {{23, "%"}}, text, "\r\nO1\r\nG0X1\r\n"},
        {"skip up to, after conversion", {{17, "O1<13><10>"}}, text, "G0X1\r\n"},
        {"skip up to what does not occur", {{17, "Q"}}, text, text},
        {"NULs neither stored nor counted", {}, std::string(50, '\0') + text, text},
        {"a stored 26 goes", {}, text + "\x1a", text},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Shop_floor shop;
        shop.machine_file("Mill", c.lines);
        shop.receive_from_machine("NEW.NC", c.wire);
        EXPECT_EQ(shop.file("NEW.NC"), c.saved);
        EXPECT_EQ(shop.scratch(file_names::scratch), "(missing)");
        EXPECT_TRUE(shop.idle());
        EXPECT_EQ(shop.window().Stop_button.caption(), "Reset");
    }
}

TEST(Receive, ReportsTheSavedFileInTheEditor) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.receive_from_machine("NEW.NC", "%\r\nG0\r\n");
    EXPECT_EQ(shop.log(),
              "File /nc/NEW.NC has been saved\r\nFile size: 7 bytes\r\nDate: 21.11.26\r\n"
              "Time: 10:30\r\n" +
                  std::string(50, '-') + "\r\n%\r\nG0\r\n");
}

TEST(Receive, EndsAfterTheTimeOutOfSilence) {
    struct Case {
        const char* line;
        Clock_time silence;
    };
    const Case cases[] = {{"3", 3s}, {"1", 1s}, {"66", 65s}, {"", 3s}, {"0", 3s}, {"abc", 3s}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        Shop_floor shop;
        shop.machine_file("Mill", {{15, c.line}});
        shop.receive("NEW.NC");
        shop.pass(10min);
        shop.machine().sends("%\r\n");
        const Clock_time sent = shop.desk.loop.now();
        shop.desk.loop.run_until([&] { return shop.idle(); });
        EXPECT_NEAR(static_cast<double>((shop.desk.loop.now() - sent).count()),
                    static_cast<double>(c.silence.count()), 60'000);
    }
}

TEST(Receive, AnswersALoneDc2WithTheMachinesXon) {
    Shop_floor shop;
    shop.machine_file("Mill", {{4, " 1"}});
    shop.receive("NEW.NC");
    shop.machine().sends("\x12");
    shop.pass(900ms);
    EXPECT_EQ(shop.received(), "");
    shop.pass(200ms);
    EXPECT_EQ(shop.received(), "\x91");
    shop.machine().sends("\x92");
    shop.pass(1100ms);
    EXPECT_EQ(shop.received(), "\x91\x91") << "every lone DC2 before data";
    shop.machine().sends(odd("%\r\n\x12G0\r\n"));
    shop.pass(4s);
    EXPECT_EQ(shop.received(), "\x91\x91") << "none once data has begun";
    EXPECT_EQ(shop.file("NEW.NC"), "%\r\n\x12G0\r\n");
}

TEST(Receive, AbortKeepsTheRawBytesAndSavesNothing) {
    Shop_floor shop;
    shop.machine_file("Mill", {{15, "*3"}});
    shop.receive("NEW.NC");
    shop.machine().sends("%\r\nG0\r\n");
    shop.pass(1min);
    EXPECT_EQ(shop.log(), "Receiving data ... 7 bytes") << "no time-out until aborted";
    shop.window().Stop_button.click();
    shop.pass(100ms);
    EXPECT_EQ(shop.log(), "Receive aborted. File /nc/NEW.NC not saved.");
    EXPECT_EQ(shop.file("NEW.NC"), "(missing)");
    EXPECT_EQ(shop.scratch(file_names::scratch), "%\r\nG0\r\n");
    EXPECT_FALSE(shop.window().Stop_button.enabled());
    EXPECT_NE(shop.window().status_label.caption().find("scratchpad data 5"), std::string::npos);
    shop.machine_file("Mill");
    shop.receive_from_machine("NEW.NC", "%\r\n");
    EXPECT_EQ(shop.file("NEW.NC"), "%\r\n") << "the next receive works";
}

TEST(Receive, SplitsProgramsIntoFiles) {
    struct Case {
        const char* what;
        std::string wire;
        std::vector<std::pair<std::string, std::string>> files;
    };
    const Case cases[] = {
        {"two programs, the later of one number wins",
         "%\r\nO100(A)\r\nG0\r\n:0020\r\nG1\r\nO100\r\nG2\r\n%\r\n",
         {{"P.NC O 100", "O100\r\nG2\r\n%\r\n\r\n"}, {"P.NC O 20", ":0020\r\nG1\r\n\r\n"}}},
        {"no program line", "%\r\nG0\r\n", {{"P.NC", "%\r\nG0\r\n\r\n"}}},
        {"a program without number", "OVER\r\n", {{"P.NC O 0", "OVER\r\n\r\n"}}},
        {"no number that fits",
         "O-" + std::string(30, '8') + "\r\n",
         {{"P.NC O-9000000000000000", "O-" + std::string(30, '8') + "\r\n\r\n"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Shop_floor shop;
        shop.machine_file("Mill", {{18, " 1 "}});
        shop.receive_from_machine("P.NC", c.wire);
        for (const auto& [name, content] : c.files) {
            EXPECT_EQ(shop.file(name), content) << name;
        }
        EXPECT_EQ(shop.file("P.NC") != "(missing)", c.files.front().first == "P.NC");
        EXPECT_EQ(shop.scratch(file_names::scratch), "(missing)");
        EXPECT_TRUE(shop.idle());
    }
}

TEST(Receive, RefusesThe501stProgramAndKeepsTheTextAsOneFile) {
    std::string wire;
    for (int number = 1; number <= 501; ++number) {
        wire += "O" + std::to_string(number) + "\r\n";
    }
    Shop_floor shop;
    shop.machine_file("Mill", {{18, "1"}});
    shop.boxes().expect("Subscript out of range");
    shop.receive_from_machine("P.NC", wire);
    EXPECT_EQ(shop.file("P.NC"), wire);
    EXPECT_EQ(shop.file("P.NC O 1"), "(missing)");
    EXPECT_TRUE(shop.idle());
}

TEST(Receive, TellsDataThatCannotBeTextAndKeepsIt) {
    Shop_floor unknown;
    unknown.machine_file("Mill");
    unknown.boxes().expect("Cannot recognize received data.\nCheck I/O device settings.");
    unknown.receive_from_machine("NEW.NC", "no line end");
    EXPECT_EQ(unknown.file("NEW.NC"), "no line end") << "saved raw";

    Shop_floor illegal;
    illegal.machine_file("Mill", {{10, "YES"}, {13, "NO"}});
    illegal.boxes().expect("Illegal characters received via serial port.");
    illegal.receive_from_machine("NEW.NC", "no line end");
    EXPECT_EQ(illegal.file("NEW.NC"), "(missing)");
    EXPECT_TRUE(illegal.idle());
}

TEST(Receive, BinaryKeepsAllByteValues) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.binary_receive("IGNORED");
    EXPECT_EQ(shop.log(), "Ready to receive BINARY data ...");
    shop.machine().sends(all);
    shop.desk.loop.run_until([&] { return shop.idle(); });
    EXPECT_EQ(shop.scratch(file_names::received_binary), all);
    EXPECT_EQ(shop.file("IGNORED"), "(missing)");
}

TEST(Receive, WhatCannotBeSavedStaysStagedAndIsSaid) {
    struct Case {
        const char* what;
        std::function<void(Memory_files&)> breaks;
        const char* box = "/nc/NEW.NC";
        const char* skip_up_to = "";
    };
    const Case cases[] = {
        {"folder gone", [](Memory_files& files) { files.remove_folder("/nc"); }},
        {"target fails", [](Memory_files& files) { files.fail("replace", "NEW.NC"); }},
        {"no text", [](Memory_files& files) { files.fail("replace", "data 5b"); }, "data 5b"},
        {"all skipped", [](Memory_files&) {}, "Nothing was received after", "G0<13><10>"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Shop_floor shop;
        shop.machine_file("Mill", {{17, c.skip_up_to}});
        shop.program("NEW.NC", "the old one");
        shop.boxes().expect("Overwrite existing file?", Message_answer::yes);
        shop.receive("NEW.NC");
        c.breaks(shop.desk.files);
        shop.machine().sends("%\r\nG0\r\n");
        shop.boxes().expect(c.box);
        shop.desk.loop.run_until([&] { return shop.idle(); });
        EXPECT_EQ(shop.file("NEW.NC"), "the old one");
        EXPECT_EQ(shop.scratch(file_names::scratch), "%\r\nG0\r\n");
        EXPECT_NE(shop.boxes().shown().back().text.find("scratchpad data 5"), std::string::npos);
    }
}

TEST(Receive, ALostAdapterOrAFullDiskKeepsWhatHadCome) {
    Shop_floor lost;
    lost.machine_file("Mill");
    lost.receive("NEW.NC");
    lost.machine().sends("%\r\nG0\r\n");
    lost.pass(500ms);
    lost.machine().hang_up();
    lost.boxes().expect("COM1 (/dev/test1) is no longer there");
    lost.pass(100ms);
    EXPECT_TRUE(lost.idle());
    EXPECT_EQ(lost.scratch(file_names::scratch), "%\r\nG0\r\n");

    Shop_floor full;
    full.machine_file("Mill");
    full.receive("NEW.NC");
    full.machine().sends("%\r\n");
    full.pass(500ms);
    full.desk.files.set_capacity(0);
    full.machine().sends("G0\r\n");
    full.boxes().expect("No space left on device");
    full.pass(100ms);
    EXPECT_TRUE(full.idle());
    EXPECT_EQ(full.scratch(file_names::scratch), "%\r\n");
}

TEST(Receive, AsksBeforeOverwritingAndNoOpensTheDialogAgain) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("OLD.NC", "old");
    shop.start();
    shop.desk.file_dialog.answers = {"/nc/OLD.NC", "/nc/NEW.NC"};
    shop.boxes().expect("already exists. Overwrite existing file?", Message_answer::no);
    shop.window().FileMenuItem[1].click();
    EXPECT_EQ(shop.state().filename, "/nc/NEW.NC");
    EXPECT_EQ(shop.log(), "Ready to receive data ...");
    EXPECT_EQ(shop.file("OLD.NC"), "old");
}

TEST(Receive, ADataByteThatComesAsTheTimeOutFallsDueIsNotLost) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.receive("NEW.NC");
    shop.machine().sends("%\r\n");
    shop.desk.loop.run_until([&] { return shop.state().receiving == 1; });
    shop.desk.loop.after(2997ms, [&] { shop.machine().sends("G0\r\n"); });
    shop.desk.loop.run_until([&] { return shop.idle(); });
    EXPECT_EQ(shop.file("NEW.NC"), "%\r\nG0\r\n");
}

TEST(Receive, ANewCommandAbortsItAndSavesNothingToTheNewName) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("PART.NC", "G0\r\n");
    shop.receive("NEW.NC");
    shop.machine().sends("%\r\nG1\r\n");
    shop.pass(2990ms);
    shop.send("PART.NC");
    EXPECT_EQ(shop.file("PART.NC"), "G0\r\n");
    EXPECT_EQ(shop.received(), "G0\r\n");
    EXPECT_EQ(shop.file("NEW.NC"), "(missing)");
}

TEST(Receive, ACommandPickedDuringTheConversionRunsAfterIt) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.desk.files.put("/kelvane/Switchbox codes for Mill", "A\r\n");
    shop.receive("ONE.NC");
    shop.machine().sends("%\r\n" + std::string(500, 'A'));
    shop.window().Text1.observe([&] {
        if (shop.log().starts_with("Code converting")) {
            shop.machine().after(0s).runs([&] { shop.receive("TWO.NC"); });
        }
    });
    shop.pass(5s);
    EXPECT_EQ(shop.file("ONE.NC"), "%\r\n" + std::string(500, 'A'));
    EXPECT_EQ(shop.log(), "Ready to receive data ...") << "no hold is left of the first";
    EXPECT_EQ(shop.received(), "AA") << "the select codes";
}

TEST(Receive, TwoCommandsPickedInARowDoNotBothRun) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("PART.NC", "G0\r\n");
    shop.receive("ONE.NC");
    shop.machine().after(1ms).runs([&] { shop.receive("TWO.NC"); });
    shop.send_without_start("PART.NC");
    EXPECT_EQ(shop.log(), "Ready to receive data ...");
    shop.machine().sends("%\r\n");
    shop.pass(5s);
    EXPECT_TRUE(shop.idle());
    EXPECT_EQ(shop.file("TWO.NC"), "%\r\n");
}

TEST(CommandLineReceive, PreparesItsTargetAndEndsTheProgram) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("A.B", "old");
    shop.boxes().expect("Do you want to overwrite the exiting file?", Message_answer::yes);
    shop.start("2|/nc/A.B|Mill");
    shop.pass(200ms);
    EXPECT_EQ(shop.file("A.bak"), "old");
    shop.machine().sends("%\r\n");
    shop.desk.loop.run_until([&] { return shop.desk.windows.ended; });
    EXPECT_EQ(shop.file("A.B"), "%\r\n");
    EXPECT_EQ(shop.file("DummyfilenameforIOtest"), "(missing)");

    Shop_floor refused;
    refused.program("OLD", "old");
    refused.boxes().expect("already exists.", Message_answer::no);
    refused.start("2|/nc/OLD");
    refused.pass(200ms);
    EXPECT_TRUE(refused.desk.windows.ended);
    EXPECT_EQ(refused.machine().times_opened(), 0);

    Shop_floor own_backup;
    own_backup.program("OLD.bak", "old");
    own_backup.boxes().expect("already exists.", Message_answer::yes);
    own_backup.start("2|/nc/OLD.bak");
    own_backup.boxes().expect("Unable to read from file");
    own_backup.pass(200ms);
    EXPECT_EQ(own_backup.file("OLD.bak"), "old") << "it stays until there is a new one";

    Shop_floor no_folder;
    no_folder.boxes().expect("Cannot write to folder /gone");
    no_folder.start("6|/gone/NEW");
    no_folder.pass(200ms);
    EXPECT_TRUE(no_folder.desk.windows.ended);
}

}  // namespace
}  // namespace kelvane::testing
