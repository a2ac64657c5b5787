// Receives on the scripted machine, from the first byte to the saved file.

#include <gtest/gtest.h>

#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

const std::string text = "%\r\nO1\r\nG0X1\r\n";

TEST(Receive, SavesWhatTheMachinePunchesInEveryCode) {
    const struct {
        const char* what;
        Setting_lines lines;
        std::string wire;
        std::string saved = text;
    } cases[] = {
        {"no parity", {}, text},
        {"even parity, recognised by CR", {{4, " 0"}}, even(text)},
        {"odd parity, recognised by CR", {{4, " 1"}}, odd(text)},
        {"even parity, set by hand", {{4, " 0"}, {13, "NO"}}, even(text)},
        {"LF machine", {{6, " 0"}}, "%\nO1\nG0X1\n"},
        {"EIA, recognised, capitals", {{4, " 3"}}, eia_code("%\nO1\ng0x1\n")},
        {"EIA, set by hand", {{4, " 3"}, {13, "NO"}}, eia_code("%\nO1\nG0X1\n")},
        {"recognised although the record says EIA", {{4, " 3"}}, text},
        {"no rests", {{9, "YES"}, {10, "YES"}}, "junk\r\n" + text + "rest"},
        {"unfinished line kept", {}, text + "rest", text + "rest"},
        {"receive mask", {{4, " 0"}, {23, "%"}}, even(text), "\r\nO1\r\nG0X1\r\n"},
        {"a DC2 at the front of data", {}, "\x12" + text, "\x12" + text},
        {"skip up to, after conversion", {{17, "O1<13><10>"}}, text, "G0X1\r\n"},
        {"skip up to what does not occur", {{17, "Q"}}, text},
        {"NULs neither stored nor counted", {}, std::string(50, '\0') + text},
        {"a stored 26 goes", {}, text + "\x1a"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Shop_floor shop(c.lines, "");
        shop.receive_from_machine("NEW.NC", c.wire);
        EXPECT_EQ(shop.file("NEW.NC"), c.saved);
        EXPECT_EQ(shop.scratch(), "(missing)");
        EXPECT_TRUE(shop.idle());
        EXPECT_EQ(shop.window().Stop_button.caption(), "Reset");
        EXPECT_EQ(shop.log(),
                  "File /nc/NEW.NC has been saved\r\nFile size: " + std::to_string(c.saved.size()) +
                      " bytes\r\nDate: 21.11.26\r\nTime: 10:30\r\n" + std::string(50, '-') +
                      "\r\n" + c.saved);
    }
}

TEST(Receive, EndsAfterTheTimeOutOfSilence) {
    const std::pair<const char*, Clock_time> cases[] = {{"3", 3s}, {"1", 1s}, {"66", 65s},
                                                        {"", 3s},  {"0", 3s}, {"abc", 3s}};
    for (const auto& [line, silence] : cases) {
        Shop_floor shop({{15, line}}, "");
        shop.receive();
        shop.pass(10min);
        shop.machine().sends("%\r\n");
        const Clock_time sent = shop.desk.loop.now();
        shop.wait_until_idle();
        EXPECT_GE(shop.desk.loop.now() - sent, silence) << line;
        EXPECT_LE(shop.desk.loop.now() - sent, silence + 60ms) << line;
    }
}

TEST(Receive, AnswersALoneDc2WithTheMachinesXon) {
    Shop_floor shop({{4, " 1"}}, "");
    shop.receive();
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
    Shop_floor shop({{15, "*3"}}, "");
    shop.receive();
    shop.machine().sends("%\r\nG0\r\n");
    shop.pass(1min);
    EXPECT_EQ(shop.log(), "Receiving data ... 7 bytes") << "no time-out until aborted";
    shop.window().Stop_button.click();
    shop.pass(100ms);
    EXPECT_EQ(shop.log(), "Receive aborted. File /nc/NEW.NC not saved.");
    EXPECT_EQ(shop.file("NEW.NC"), "(missing)");
    EXPECT_EQ(shop.scratch(), "%\r\nG0\r\n");
    EXPECT_FALSE(shop.window().Stop_button.enabled());
    EXPECT_NE(shop.status().find("scratchpad data 5"), std::string::npos);
    shop.machine_file("Mill");
    shop.receive_from_machine("NEW.NC", "%\r\n");
    EXPECT_EQ(shop.file("NEW.NC"), "%\r\n") << "the next receive works";
}

TEST(Receive, SplitsProgramsIntoFiles) {
    const std::string absurd = "O-" + std::string(30, '8') + "\r\n";
    const struct {
        const char* what;
        std::string wire;
        std::vector<std::pair<std::string, std::string>> files;
    } cases[] = {
        {"two programs, the later of one number wins",
         "%\r\nO100(A)\r\nG0\r\n:0020\r\nG1\r\nO100\r\nG2\r\n%\r\n",
         {{"P.NC O 100", "O100\r\nG2\r\n%\r\n\r\n"}, {"P.NC O 20", ":0020\r\nG1\r\n\r\n"}}},
        {"no program line", "%\r\nG0\r\n", {{"P.NC", "%\r\nG0\r\n\r\n"}}},
        {"a program without number", "OVER\r\n", {{"P.NC O 0", "OVER\r\n\r\n"}}},
        {"no number that fits", absurd, {{"P.NC O-9000000000000000", absurd + "\r\n"}}},
    };
    for (const auto& c : cases) {
        Shop_floor shop({{18, " 1 "}}, "");
        shop.receive_from_machine("P.NC", c.wire);
        for (const auto& [name, content] : c.files) {
            EXPECT_EQ(shop.file(name), content) << c.what;
        }
        EXPECT_EQ(shop.file("P.NC") != "(missing)", c.files.front().first == "P.NC");
        EXPECT_EQ(shop.scratch(), "(missing)");
        EXPECT_TRUE(shop.idle());
    }
}

TEST(Receive, KeepsTheOldFileOfAProgramNumberAndCountsFiles) {
    Shop_floor shop({{18, "1"}}, "");
    shop.program("P.NC O 1", "another O1");
    shop.program("P.NC O 2", "O2\r\n\r\n");
    shop.receive_from_machine("P.NC", "O1\r\nG9\r\nO2\r\nO1\r\n");
    EXPECT_EQ(shop.file("P.NC O 1"), "O1\r\n\r\n");
    EXPECT_EQ(shop.file("P.NC O 1.bak"), "another O1");
    EXPECT_EQ(shop.file("P.NC O 2.bak"), "(missing)") << "the same as before";
    EXPECT_NE(shop.status().find("Saved 2 programs"), std::string::npos);
    EXPECT_NE(shop.status().find("3 were received"), std::string::npos);
}

TEST(Receive, OfNothingButNULsTheCauseIsToldWhileItWaitsAndWhenItIsStopped) {
    Shop_floor shop({}, "");
    shop.menu(1, "NEW.NC");
    shop.machine().sends(std::string(9, '\0'));
    shop.pass(31s);
    const auto& view = shop.window().state_field.view();
    EXPECT_TRUE(view.advice.starts_with("Only NULs came: the machine's baud rate is lower"))
        << view.advice;
    shop.machine().errors.framing = 9;
    shop.window().Stop_button.click();
    shop.wait_until_idle();
    EXPECT_EQ(view.advice.find("Only NULs"), view.advice.rfind("Only NULs")) << view.advice;
    EXPECT_EQ(view.advice.find("framing"), view.advice.rfind("framing")) << view.advice;
    EXPECT_NE(shop.status().find("a leader. 9 characters came with framing"), std::string::npos)
        << shop.status();
}

TEST(Receive, StopEndsTheSelectCodesToo) {
    for (const char* handshake : {" 0", " 1"}) {
        Shop_floor shop({{5, handshake}}, "");
        shop.desk.files.put("/kelvane/Switchbox codes for Mill", std::string(100, 'A') + "\r\n");
        shop.machine().after_bytes(5, [&] { shop.window().Stop_button.click(); });
        shop.menu(1, "NEW.NC");
        EXPECT_LT(shop.received().size(), 15U);
        EXPECT_EQ(shop.log(), "Receive aborted. File /nc/NEW.NC not saved.");
        EXPECT_TRUE(shop.idle());
    }
}

TEST(Receive, BeepsOnceForItsDataAndSyncsItEverySecond) {
    Shop_floor shop({}, "");
    shop.receive();
    shop.machine().sends("\x12");
    shop.pass(1s);
    shop.machine().sends("\x12");
    shop.pass(1s);
    for (int second = 0; second < 3; ++second) {
        shop.machine().sends("N\r\n");
        shop.pass(1s);
    }
    EXPECT_EQ(shop.desk.files.synced, "N\r\nN\r\n") << "all but the last second";
    shop.wait_until_idle();
    EXPECT_EQ(shop.desk.desktop.beeps, 3) << "the start, the first data, the end";
}

TEST(Receive, RefusesThe501stProgramAndKeepsTheTextAsOneFile) {
    std::string wire;
    for (int number = 1; number <= 501; ++number) {
        wire += "O" + std::to_string(number) + "\r\n";
    }
    Shop_floor shop({{18, "1"}}, "");
    shop.boxes().expect("Subscript out of range");
    shop.receive_from_machine("P.NC", wire);
    EXPECT_EQ(shop.file("P.NC"), wire);
    EXPECT_EQ(shop.file("P.NC O 1"), "(missing)");
    EXPECT_TRUE(shop.idle());
}

TEST(Receive, TellsDataThatCannotBeTextAndKeepsIt) {
    const struct {
        Setting_lines lines;
        const char *said, *saved;
    } cases[] = {
        {{}, "Cannot recognize received data.\nCheck I/O device settings.", "no line end"},  // raw
        {{{10, "YES"}, {13, "NO"}}, "Illegal characters received via serial port.", "(missing)"}};
    for (const auto& c : cases) {
        Shop_floor shop(c.lines, "");
        shop.boxes().expect(c.said);
        shop.receive_from_machine("NEW.NC", "no line end");
        EXPECT_EQ(shop.file("NEW.NC"), c.saved);
        EXPECT_EQ(shop.scratch(), *c.saved == '(' ? "no line end" : "(missing)");
        EXPECT_TRUE(shop.idle());
        const bool saved = shop.file("NEW.NC") != "(missing)";
        const std::string unconverted = "saved unconverted: tape code not recognised";
        EXPECT_EQ(shop.status().find(unconverted) != std::string::npos, saved);
        EXPECT_EQ(shop.log().find("\r\n" + unconverted + "\r\n-") != std::string::npos, saved);
    }
}

TEST(Receive, TellsWrongParityAfterTheSaveAndAJobTellsStandardError) {
    std::string wire = even("%\r\nO1\r\nG0X100.5\r\n");
    wire[11] = static_cast<char>(wire[11] ^ 4);  // "X100" becomes "X140"
    const std::string said = "1 character had wrong parity: line 3";
    Shop_floor shop({{4, " 0"}}, "");
    shop.start("/nc/PART.NC");  // opened; no job
    shop.boxes().expect(said);
    shop.receive_from_machine("NEW.NC", wire);
    EXPECT_EQ(shop.file("NEW.NC"), "%\r\nO1\r\nG0X140.5\r\n") << "nothing is changed";
    EXPECT_NE(shop.log().find("\r\n" + said + "\r\n-----"), std::string::npos) << shop.log();

    Shop_floor apart({{4, " 0"}, {18, " 1 "}}, "");
    apart.start("/nc/PART.NC");
    apart.boxes().expect(said + "\n(lines counted through all programs)");
    apart.receive_from_machine("NEW.NC", wire);

    Shop_floor job({{4, " 0"}}, "");
    job.desk.files.put(job.desk.files.program_path(file_names::machine_list), "Mill\r\n");
    job.start("2|/nc/NEW.NC|Saw");
    job.pass(200ms);
    job.machine().sends(wire);
    job.desk.loop.run_until([&] { return job.desk.windows.ended; });
    const std::string added =
        "Machine Saw is not in the list of machines and has been added to it; this job goes to "
        "Mill";
    EXPECT_EQ(job.desk.desktop.told, added + "\n" + said + "\n");
    const std::string log =
        job.desk.files.content(job.desk.files.program_path(file_names::transfer_log));
    EXPECT_TRUE(log.ends_with("\tdone\t" + said + ";" + added + "\r\n")) << log;
    EXPECT_EQ(job.desk.windows.exit_status, 0);
}

TEST(Receive, SaysWhatIsWrongOnTheLine) {
    const struct {
        std::string bytes;
        Line_errors errors;
        std::string remark, unrecognised;
    } cases[] = {
        {"%\r\nN1\n", {0, 2, 0, 0}, "2 of 6 characters came with parity errors", ""},
        {"1234567",
         {0, 7, 0, 0},
         "7 of 7 characters came with parity errors",
         "Cannot recognize received data"},
        {"\xC1\xC2", {}, "Every character came with bit 7 set", "Cannot recognize received data"},
        {"%\r\nN1\n", {}, "Saved /nc/NEW.NC", ""},
    };
    for (const auto& c : cases) {
        Shop_floor shop(Setting_lines{}, "");
        if (!c.unrecognised.empty()) {
            shop.boxes().expect(c.unrecognised);
        }
        shop.machine().errors = c.errors;
        shop.receive_from_machine("NEW.NC", c.bytes);
        EXPECT_NE(shop.status().find(c.remark), std::string::npos) << shop.status();
        EXPECT_EQ(shop.log().starts_with(c.remark), c.remark.find("Saved") != 0) << shop.log();
        EXPECT_EQ(shop.status().find(c.remark), shop.status().rfind(c.remark));
    }
}

TEST(Receive, ItsFolderIsTriedBeforeThePortOpens) {
    Shop_floor shop({}, "");
    shop.boxes().expect("Cannot write to directory /gone");
    shop.pick(1, "/gone/NEW.NC");
    shop.pass(100ms);
    EXPECT_EQ(shop.machine().times_opened(), 0);
}

TEST(Receive, BinaryKeepsAllByteValues) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    Shop_floor shop({}, "");
    shop.menu(5, "ASKED");
    EXPECT_EQ(shop.desk.file_dialog.shown_title, "Binary receive from Mill");
    EXPECT_EQ(shop.log(), "Ready to receive BINARY data ...");
    shop.machine().sends(all);
    shop.wait_until_idle();
    EXPECT_EQ(shop.desk.files.content("/kelvane/Received Binary data"), all);
    EXPECT_EQ(shop.file("ASKED"), all) << "under the name that was asked for as well";
}

TEST(Receive, WhatCannotBeSavedStaysStagedAndIsSaid) {
    const struct {
        std::function<void(Memory_files&)> breaks;
        const char* said;
        const char* skip_up_to = "";
    } cases[] = {
        {[](Memory_files& files) { files.folders.erase("/nc"); }, "/nc/PART.NC"},
        {[](Memory_files&) {}, "Nothing was received after", "G0<13><10>"},
    };
    for (const auto& c : cases) {
        Shop_floor shop({{17, c.skip_up_to}}, "the old one");
        shop.boxes().expect("already exists. Overwrite existing file?", Message_answer::yes);
        shop.receive("PART.NC");
        c.breaks(shop.desk.files);
        shop.machine().sends("%\r\nG0\r\n");
        shop.boxes().expect(c.said);
        shop.wait_until_idle();
        EXPECT_EQ(shop.file("PART.NC"), "the old one");
        EXPECT_EQ(shop.scratch(), "%\r\nG0\r\n");
        EXPECT_NE(shop.boxes().shown().back().text.find("scratchpad data 5"), std::string::npos);
    }
}

TEST(Receive, AFailedSaveIsTriedAgainOrGoesElsewhere) {
    for (const bool binary : {false, true}) {
        Shop_floor shop({}, "");
        shop.menu(binary ? 5 : 1, "NEW.NC");
        const char* step = binary ? "copy" : "replace";
        shop.desk.files.fail(step, "NEW.NC");
        shop.machine().sends("%\r\n");
        shop.boxes().expect("NEW.NC", Message_answer::again);
        shop.boxes().expect("NEW.NC", Message_answer::save_as);
        shop.desk.file_dialog.answers = {{File_purpose::save, "/nc/OTHER.NC"}};
        shop.wait_until_idle();
        EXPECT_EQ(shop.file("OTHER.NC"), "%\r\n");
        EXPECT_EQ(shop.desk.file_dialog.shown_proposal, "/nc/NEW.NC");
        EXPECT_NE(shop.status().find("Received OTHER.NC from Mill: 3 bytes"), std::string::npos)
            << shop.status();
        EXPECT_EQ(shop.scratch(), "(missing)");
    }
}

TEST(SaveReceivedData, ConvertedOrRawAfterStopASendAndAnotherRun) {
    const std::string wire = even("%\r\nG0X1\r\n");
    Shop_floor shop({{4, " 0"}, {15, "*3"}}, "G0\r\n");
    Button& command = shop.window().ToolsMenuItem[3];
    const auto save_as = [&](const char* path, Message_answer form) {
        shop.desk.file_dialog.answers = {{File_purpose::save, path}};
        shop.boxes().expect("9 bytes received from Mill for\n/nc/NEW.NC", form);
        command.click();
        shop.pass(100ms);
    };
    shop.start();
    shop.boxes().expect("There is no received data");
    command.click();
    shop.desk.files.fail("read", "data not saved");
    shop.boxes().expect("Cannot access file\n/kelvane/Received data not saved\nInput/output error");
    command.click();
    shop.pass(100ms);
    shop.desk.files.repair();
    shop.receive();
    shop.machine().sends(wire);
    shop.pass(1s);
    shop.window().Stop_button.click();
    shop.pass(100ms);
    save_as("/nc/TEXT.NC", Message_answer::convert);
    EXPECT_EQ(shop.desk.file_dialog.shown_proposal, "/nc/NEW.NC");
    EXPECT_EQ(shop.file("TEXT.NC"), "%\r\nG0X1\r\n");
    shop.send();
    shop.wait_until_idle();
    shop.desk.files.fail("replace", "RAW", "No space left on device");
    shop.boxes().expect("9 bytes received", Message_answer::raw);
    shop.boxes().expect("No space left on device", Message_answer::save_as);
    shop.desk.file_dialog.answers = {{File_purpose::save, "/nc/RAW"},
                                     {File_purpose::save, "/nc/BYTES"}};
    command.click();
    shop.pass(100ms);
    EXPECT_EQ(shop.file("BYTES"), wire);
    EXPECT_EQ(shop.desk.files.content("/kelvane/scratchpad data 5 (received)"), wire)
        << "the working copy of a send has taken its place, not its bytes";

    Shop_floor next_run;
    next_run.desk.files = shop.desk.files;
    next_run.start();
    next_run.boxes().expect("9 bytes received from Mill for\n/nc/NEW.NC", Message_answer::convert);
    next_run.desk.file_dialog.answers = {{File_purpose::save, "/nc/LATER.NC"}};
    next_run.window().ToolsMenuItem[3].click();
    next_run.pass(100ms);
    EXPECT_EQ(next_run.file("LATER.NC"), "%\r\nG0X1\r\n");
}

TEST(Receive, ALostAdapterOrAFullDiskKeepsWhatHadCome) {
    for (const bool lost : {true, false}) {
        SCOPED_TRACE(lost);
        Shop_floor shop({}, "");
        shop.receive();
        shop.machine().sends("%\r\nG0\r\n");
        shop.pass(500ms);
        shop.boxes().expect(lost ? "COM1 (/dev/ttyS0) is no longer there"
                                 : "No space left on device");
        shop.desk.files.fail("append", "data 5", "No space left on device");
        if (!lost) {
            shop.machine().sends("G1\r\n");
            shop.pass(10ms);
        }
        shop.machine().hang_up();  // with a full disk still one box
        shop.pass(100ms);
        EXPECT_TRUE(shop.idle());
        EXPECT_EQ(shop.scratch(), "%\r\nG0\r\n");
    }
    Shop_floor early({}, "");
    early.receive();
    early.boxes().expect("COM1 (/dev/ttyS0) is no longer there.\nNothing had come.");
    early.machine().hang_up();
    early.pass(100ms);
    EXPECT_TRUE(early.status().ends_with("is no longer there")) << early.status();
}

TEST(Receive, AsksBeforeOverwritingAndNoOpensTheDialogAgain) {
    Shop_floor shop({}, "old");
    shop.desk.file_dialog.answers = {{File_purpose::save, "/nc/PART.NC"}};
    shop.boxes().expect("already exists. Overwrite existing file?", Message_answer::no);
    shop.receive();
    EXPECT_EQ(shop.state().filename, "/nc/NEW.NC");
    EXPECT_EQ(shop.log(), "Ready to receive data ...");
    EXPECT_EQ(shop.file("PART.NC"), "old");
}

TEST(Receive, ADataByteThatComesAsTheTimeOutFallsDueIsNotLost) {
    Shop_floor shop({}, "");
    shop.receive();
    shop.machine().sends("%\r\n");
    shop.desk.loop.run_until([&] { return shop.window().control.receiving() == 1; });
    shop.machine().after(2997ms, [&] { shop.machine().sends("G0\r\n"); });
    shop.wait_until_idle();
    EXPECT_EQ(shop.file("NEW.NC"), "%\r\nG0\r\n");
}

TEST(Receive, ANewCommandAbortsItAndSavesNothingToTheNewName) {
    Shop_floor shop({}, "G0\r\n");
    shop.receive();
    shop.machine().sends("%\r\nG1\r\n");
    shop.pass(2990ms);
    shop.boxes().expect("NEW.NC is being received. Stop it?", Message_answer::yes);
    shop.send();
    EXPECT_EQ(shop.file("PART.NC"), "G0\r\n");
    EXPECT_EQ(shop.received(), "G0\r\n");
    EXPECT_EQ(shop.file("NEW.NC"), "(missing)");
}

TEST(Receive, ACommandPickedDuringTheConversionRunsAfterIt) {
    Shop_floor shop({}, "");
    shop.desk.files.put("/kelvane/Switchbox codes for Mill", "A\r\n");
    shop.receive("ONE.NC");
    shop.machine().sends("%\r\n" + std::string(500, 'A'));
    shop.window().Text1.observe([&] {
        if (shop.log().starts_with("Code converting")) {
            shop.boxes().expect("Stop it?", Message_answer::yes);
            shop.machine().after(0s, [&] { shop.pick(1, "TWO.NC"); });
        }
    });
    shop.pass(5s);
    EXPECT_EQ(shop.file("ONE.NC"), "%\r\n" + std::string(500, 'A'));
    EXPECT_EQ(shop.log(), "Ready to receive data ...") << "no hold is left of the first";
    EXPECT_EQ(shop.received(), "AA") << "the select codes";
}

TEST(Receive, TwoCommandsPickedInARowDoNotBothRun) {
    Shop_floor shop({}, "G0\r\n");
    shop.receive("ONE.NC");
    shop.machine().after(1ms, [&] { shop.pick(1, "TWO.NC"); });
    shop.boxes().expect("ONE.NC is being received. Stop it?", Message_answer::yes);
    shop.boxes().expect("PART.NC is being sent, 0 %. Stop it?", Message_answer::yes);
    shop.menu(0);
    EXPECT_EQ(shop.log(), "Ready to receive data ...");
    shop.machine().sends("%\r\n");
    shop.pass(5s);
    EXPECT_TRUE(shop.idle());
    EXPECT_EQ(shop.file("TWO.NC"), "%\r\n");
}

TEST(CommandLineReceive, PreparesItsTargetAndEndsTheProgram) {
    Shop_floor shop({}, "");
    shop.program("A.B", "old");
    shop.boxes().expect("Do you want to overwrite the exiting file?", Message_answer::yes);
    shop.start("2|/nc/A.B|Mill");
    shop.pass(200ms);
    EXPECT_EQ(shop.file("A.bak"), "old");
    shop.machine().sends("%\r\n");
    shop.desk.loop.run_until([&] { return shop.desk.windows.ended; });
    EXPECT_EQ(shop.file("A.B"), "%\r\n");
    EXPECT_EQ(shop.file("DummyfilenameforIOtest"), "(missing)");

    Shop_floor own_backup({}, "");
    own_backup.program("OLD.bak", "old");
    own_backup.boxes().expect("already exists.", Message_answer::yes);
    own_backup.start("2|/nc/OLD.bak");
    own_backup.boxes().expect("Unable to read from file");
    own_backup.pass(200ms);
    EXPECT_EQ(own_backup.file("OLD.bak"), "old") << "it stays until there is a new one";

    for (const bool folder : {true, false}) {
        Shop_floor refused({}, "old");
        refused.boxes().expect(folder ? "already exists." : "Cannot write to directory /gone",
                               folder ? Message_answer::no : Message_answer::ok);
        refused.start(folder ? "2|/nc/PART.NC" : "6|/gone/NEW");
        refused.pass(200ms);
        EXPECT_TRUE(refused.desk.windows.ended);
        EXPECT_EQ(refused.machine().times_opened(), 0);
    }
}

}  // namespace
}  // namespace kelvane::testing
