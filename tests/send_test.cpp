// Sends from the menu, on the scripted machine: what the wire sees, and when.

#include <gtest/gtest.h>

#include "support/shop_floor.h"
#include "transmit/readable_leader.h"

namespace kelvane::testing {
namespace {

constexpr const char* part = "O0001\r\nG0X1\r\nM30\r\n";

TEST(Send, PutsLeaderLinesAndTrailerOnTheWireInTheTapeCode) {
    const struct {
        const char* what;
        Setting_lines lines;
        std::string wire;
    } cases[] = {
        {"no parity, CR LF", {}, part},
        {"even parity, LF", {{4, " 0"}, {6, " 0"}}, even("O0001\nG0X1\nM30\n")},
        {"odd parity, CR", {{4, " 1"}, {6, " 1"}}, odd("O0001\rG0X1\rM30\r")},
        {"even parity, LF CR", {{4, " 0"}, {6, " 2"}}, even("O0001\n\rG0X1\n\rM30\n\r")},
        {"EIA: its own end of block", {{4, " 3"}, {6, "4<13>"}}, eia_code("O0001\nG0X1\nM30\n")},
        {"custom end of block", {{6, "4<13>LFLF"}}, "O0001\r\n\nG0X1\r\n\nM30\r\n\n"},
        {"leader and trailer",
         {{7, "%LFCR"}, {8, "%NUL"}},
         "%\n\r" + std::string(part) + "%" + '\0'},
        {"send mask", {{16, "G0"}}, "O1\r\nX1\r\nM3\r\n"},
        {"skip at column 1 and later", {{14, "0X"}}, "O0001\r\nG\r\nM30\r\n"},
        {"skip lines from their first column", {{14, "G"}}, "O0001\r\nM30\r\n"},
        {"skip lines that contain", {{24, "X1"}}, "O0001\r\nM30\r\n"},
        {"TV parity pads to even lines", {{21, "YES"}, {6, " 0"}}, "O0001\nG0X1 \nM30\n"},
        {"unknown end of block is CR LF", {{6, "41"}}, part},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Shop_floor shop(c.lines, part);
        shop.send();
        EXPECT_EQ(shop.received(), c.wire);
        EXPECT_TRUE(shop.idle());
        EXPECT_EQ(shop.scratch(), "(missing)");
    }
}

TEST(Send, LinesOfFilesOfAnyOriginArriveWhole) {
    const std::string two_nuls(2, '\0');
    const std::pair<std::string, std::string> cases[] = {
        {"(pr\xC3\xA9-per\xC3\xA7"
         "age Z-50)\nM30\n",
         "(pr" + two_nuls + "-per" + two_nuls + "age Z-50)\r\nM30\r\n"},
        {"G0X1\rG1Z-5\r\nM30\r\n", "G0X1\r\nG1Z-5\r\nM30\r\n"},
        {even("O0001(MILL)\rG0X1\rM30\r"), "O0001(MILL)\r\nG0X1\r\nM30\r\n"},
        {"M30\r\n%\r\n\x1A", "M30\r\n%\r\n"},
        {"M30\r\n\x1A\r\n", "M30\r\n"},
    };
    for (const auto& [file, wire] : cases) {
        Shop_floor shop({}, file);
        shop.send();
        EXPECT_EQ(shop.received(), wire);
    }
}

TEST(Send, SpellsTheNameOnTheTapeAndClosesItWithATail) {
    for (const int code : {0, 1, 3}) {
        SCOPED_TRACE(code);
        Shop_floor shop(
            {{4, " " + std::to_string(code)}, {6, " 0"}, {7, "%LF"}, {8, "%"}, {11, "YES"}},
            "G0\r\n");
        shop.send();
        const auto tape = readable_leader("PART.NC", Tape_code(code), "%");
        EXPECT_EQ(
            shop.received(),
            tape.leader + in_tape_code("%\nG0\n" + tape.trailer, std::size_t(code)) + tape.tail);
    }
}

TEST(Send, DropsBlankLinesAndLooksAtTheHandshakeAsOftenAsTheRecordSays) {
    Shop_floor blanks({{20, "YES"}}, "G0\r\n\r\nG1\r\n");
    blanks.send();
    EXPECT_EQ(blanks.received(), "G0\r\nG1\r\n");
    Shop_floor checks({{12, "20"}}, std::string(100, 'A'));
    checks.send();
    EXPECT_GE(checks.machine().most_queued(), 20U);
    EXPECT_LE(checks.machine().most_queued(), 22U);
}

// The sender obeys the handshake by itself; a receive leaves it to the driver.
TEST(Port, OpensAsTheRecordSays) {
    const struct {
        Setting_lines lines;
        const char* device;
        const char* settings;
        Handshake receives_with = Handshake::xon_xoff;
        const char* xon_and_xoff = "\x11\x13";
    } cases[] = {
        {{}, "/dev/ttyS0", "9600,N,8,1"},
        {{{1, "2"}, {2, "1"}}, "/dev/ttyS1", "9600,N,8,1"},  // an old file's port and baud
        {{{1, "COM3"}, {2, "BAUD4"}, {3, " 0"}, {5, " 0"}},
         "/dev/ttyS2",
         "4800,N,8,2",
         Handshake::none},
        // 7 bits, even: the table makes it
        {{{4, " 0"}, {5, " 2"}}, "/dev/ttyS0", "9600,N,8,1", Handshake::rts_cts, "\x11\x93"},
        {{{4, " 0"}, {25, "True"}}, "/dev/ttyS0", "9600,E,8,1", Handshake::xon_xoff, "\x11\x93"},
        {{{4, " 1"}, {25, "TRUE"}, {3, " 1"}, {5, " 3"}},
         "/dev/ttyS0",
         "9600,O,8,1.5",
         Handshake::both,
         "\x91\x13"},
        {{{4, " 3"}}, "/dev/ttyS0", "9600,N,8,1", Handshake::xon_xoff, "\x11\x93"},
    };
    for (const auto& c : cases) {
        Shop_floor shop(c.lines, part);
        const Port_settings& port = shop.machine().settings();
        for (const bool receives : {false, true}) {
            receives ? shop.receive() : shop.send();
            EXPECT_EQ(port.device, c.device);
            EXPECT_EQ(port.settings, c.settings);
            EXPECT_EQ(port.handshake, receives ? c.receives_with : Handshake::none);
            EXPECT_EQ((std::string{port.xon, port.xoff}), c.xon_and_xoff);
            EXPECT_TRUE(port.null_discard && !port.transparent);
        }
    }
}

TEST(Send, KeepsTheLineBusyAndHoldsWithinAChunkOfTheMachinesXoffAtEveryRate) {
    const std::pair<const char*, double> rates[] = {
        {"BAUD 8", 300}, {"BAUD 3", 9600}, {"BAUD 0", 38400}, {"BAUD-2", 115200}};
    for (const auto& [line, baud] : rates) {
        SCOPED_TRACE(line);
        Shop_floor shop({{2, line}}, std::string(960, 'A'));
        std::size_t at_resume = 0;
        shop.machine().after_bytes(440, [&] {
            shop.machine().sends(xoff);
            shop.machine().after(2s, [&] {
                at_resume = shop.received().size();
                EXPECT_NE(shop.status().find("held by Xoff"), std::string::npos);
                shop.machine().sends(xon);
            });
        });
        shop.send();
        ASSERT_EQ(shop.received().size(), 962U);
        const auto& times = shop.machine().times();
        const auto seconds = [&](std::size_t from, std::size_t to) {
            return std::chrono::duration<double>(times[to] - times[from]).count();
        };
        EXPECT_NEAR(seconds(0, 439) / (4390 / baud), 1, 0.01) << "10 bits a character";
        EXPECT_LE(at_resume, 441U + 2 + 5) << "a character time for the Xoff, two queued, a chunk";
        EXPECT_GE(seconds(439, at_resume), 2.25) << "the rest after an Xon";
        EXPECT_LE(shop.machine().most_queued(), 7U);
    }
}

TEST(Send, WaitsWhileCtsIsLow) {
    Shop_floor shop({{5, " 2"}}, part);
    shop.machine().cts = false;
    shop.machine().after(3s, [&] {
        EXPECT_EQ(shop.received(), "");
        EXPECT_NE(shop.status().find("CTS low"), std::string::npos);
        shop.machine().cts = true;
    });
    shop.send();
    EXPECT_EQ(shop.received(), part);
}

TEST(Send, PausesAfterCharactersBlocksAndExclamationMarks) {
    Shop_floor shop({{19, "20"}, {22, "500"}}, "AB\r\n!wait\r\nCD\r\n");
    shop.desk.files.put("/kelvane/!delay", "2000\r\n");
    shop.send();
    ASSERT_EQ(shop.received(), "AB\r\nCD\r\n");
    const auto& times = shop.machine().times();
    EXPECT_GE(times[1] - times[0], 20ms);
    EXPECT_LT(times[1] - times[0], 25ms);
    EXPECT_GE(times[4] - times[3], 2520ms);
}

TEST(Send, StartsByTheSendButtonTooAndNotAfterStop) {
    Shop_floor shop({}, part);
    shop.machine().after(5s, [&] { shop.window().Send_button.click(); });
    shop.menu(0);
    EXPECT_EQ(shop.received(), part);
    EXPECT_GE(shop.machine().times().front(), 5s);
    shop.machine().after(1s, [&] { shop.window().Stop_button.click(); });
    shop.menu(0);
    EXPECT_EQ(shop.received(), part);
    EXPECT_TRUE(shop.idle());
    EXPECT_EQ(shop.window().Stop_button.caption(), "Stop");
    EXPECT_EQ(shop.scratch(), "(missing)");
}

TEST(Send, StopPausesUnderXonXoffAndSendGoesOnToTheEnd) {
    const std::string text = "N1\r\nN2\r\nN3\r\nN4\r\nN5\r\nN6\r\nN7\r\n";
    Shop_floor shop({}, text);
    shop.machine().after_bytes(6, [&] {
        shop.window().Stop_button.click();
        EXPECT_EQ(shop.window().Stop_button.caption(), "Reset");
        shop.machine().after(1s, [&] { shop.machine().sends(xon); });
        shop.machine().after(4s, [&] {
            EXPECT_LE(shop.received().size(), 13U) << "an Xon does not end the operator's pause";
            shop.window().Send_button.click();
        });
    });
    shop.send();
    EXPECT_EQ(shop.received(), text);
    EXPECT_GE(shop.desk.loop.now(), 4s);
}

TEST(Send, SecondStopAbortsWithinTheChunkAndWithoutXonXoffTheFirstEndsTheLine) {
    const std::string line = std::string(100, 'A') + "\r\n";
    for (const bool xon_xoff : {true, false}) {
        Shop_floor shop({{5, xon_xoff ? " 1" : " 0"}, {8, "%"}}, line + "B\r\n");
        shop.machine().after_bytes(20, [&] {
            shop.window().Stop_button.click();
            xon_xoff ? shop.window().Stop_button.click() : void();
        });
        shop.send();
        EXPECT_TRUE(xon_xoff ? shop.received().size() <= 27 : shop.received() == line);
        EXPECT_TRUE(shop.idle());
    }
    Shop_floor last_line({{5, " 0"}, {8, "%"}}, "AAAAAAAAAAAA\r\n");
    last_line.machine().after_bytes(5, [&] { last_line.window().Stop_button.click(); });
    last_line.send();
    EXPECT_EQ(last_line.received(), "AAAAAAAAAAAA\r\n") << "no trailer after a Stop";
}

TEST(Send, SelectCodesGoFirstInTheMachinesCode) {
    Shop_floor shop({{4, " 3"}}, "G0\nG1\r\n");  // a lone line feed ends a block too
    shop.desk.files.put("/kelvane/Switchbox codes for Mill", "A1<18>\r\nnot this\r\n");
    shop.send();
    EXPECT_EQ(shop.received(), eia_code("A1\x12") + eia_code("G0\nG1\n"));
    EXPECT_EQ(shop.desk.desktop.beeps, 2) << "at the start and at the end";
}

TEST(Send, AProgramThatCannotBeExpandedSendsNothing) {
    Shop_floor shop({}, "G0\r\nCALL MISSING.NC\r\n");
    shop.desk.files.put("/kelvane/Switchbox codes for Mill", "A1\r\n");
    shop.boxes().expect("MISSING.NC");
    shop.send();
    EXPECT_EQ(shop.received(), "");
    EXPECT_TRUE(shop.idle());
}

TEST(Send, SaysWhyAFileCannotBeReadOrItsCopyWritten) {
    const struct {
        std::size_t item;  ///< of the File menu
        const char *operation, *path_end, *said;
    } cases[] = {{0, "replace", "data 5", "scratchpad data 5\nNo space left on device"},
                 {0, "read", "PART.NC", "PART.NC\nNo space left on device"},
                 {4, "read", "PART.NC", "PART.NC\nNo space left on device"}};
    for (const auto& c : cases) {
        Shop_floor shop({{4, " 0"}}, "G0\r\n");
        shop.desk.files.fail(c.operation, c.path_end, "No space left on device");
        shop.boxes().expect(c.said);
        shop.send("PART.NC", c.item);
        EXPECT_EQ(shop.received(), "") << c.said;
        EXPECT_TRUE(shop.idle()) << c.said;
    }
}

TEST(Send, TheWorkingCopyItselfIsNeitherSentNorReceivedInto) {
    for (const std::size_t item : {0U, 1U, 3U}) {
        Shop_floor shop({}, "");
        shop.desk.files.put("/kelvane/scratchpad data 5", "all that is left of a receive");
        if (item == 1) {
            shop.boxes().expect("Overwrite existing file?", Message_answer::yes);
        }
        shop.boxes().expect("The program itself works with this file");
        shop.menu(item, "/kelvane/scratchpad data 5");
        EXPECT_EQ(shop.scratch(), "all that is left of a receive");
        EXPECT_TRUE(shop.idle());
    }
}

TEST(Send, CarriesEveryByteValueOfABinaryFileWithFlowControl) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    Shop_floor shop({{4, " 0"}, {7, "LEADER"}, {16, "ABC"}}, all);
    shop.machine().after_bytes(100, [&] {
        shop.machine().sends(xoff);
        shop.machine().after(1s, [&] {
            EXPECT_LE(shop.received().size(), 104U);
            shop.machine().sends(xon);
        });
    });
    shop.desk.files.put("/kelvane/Switchbox codes for Mill", "A1<18>\r\n");
    shop.send("PART.NC", 4);
    EXPECT_EQ(shop.received(), even("A1\x12") + all) << "select codes in the machine's code";
    EXPECT_FALSE(shop.machine().settings().null_discard);
    EXPECT_LE(shop.machine().most_queued(), 3U);
    EXPECT_TRUE(shop.idle());
}

TEST(Send, TellsAPortThatCannotBeOpenedOrGoesAway) {
    Shop_floor shop({{1, "COM7"}}, part);
    shop.machine().refuse("COM7 is in use by another program.");
    shop.boxes().expect("COM7 port is not available\nSelect a different COM port",
                        Message_answer::configure);
    shop.menu(0);
    EXPECT_TRUE(shop.idle() && shop.all().configure_form.visible());
    EXPECT_EQ(shop.window().state_field.view().words, "Not sent");
    EXPECT_NE(shop.log().find("in use by another"), std::string::npos);

    shop.machine().refuse(std::nullopt);
    shop.machine().after_bytes(5, [&] { shop.machine().hang_up(); });
    shop.boxes().expect("COM7 is no longer there");
    shop.send();
    EXPECT_TRUE(shop.idle());
}

TEST(Send, AnUnreadableOrCutSettingsFileIsToldAndTheSendGoesOn) {
    for (const bool exists : {false, true}) {
        Shop_floor shop({}, part);
        const std::string path = "/kelvane/Editor COM port settings for Mill";
        shop.desk.files.remove(path);
        if (exists) {
            shop.desk.files.put(path, "COM5\r\nBAUD 3\r\n 2\r\n 0\r\n");
        }
        shop.boxes().expect("Using default COM port configuration");
        shop.send();
        EXPECT_EQ(shop.received(), even(part));
        EXPECT_EQ(shop.machine().settings().device, exists ? "/dev/ttyS4" : "/dev/ttyS0");
    }
}

TEST(Send, ACommandPickedDuringASendEndsItAndThenStarts) {
    Shop_floor shop({}, std::string(500, '1') + "\r\n");
    shop.program("TWO.NC", "22\r\n");
    shop.boxes().expect("PART.NC is being sent, 0 %. Stop it?", Message_answer::no);
    shop.boxes().expect("PART.NC is being sent, 0 %. Stop it?", Message_answer::yes);
    shop.machine().after(130ms, [&] { shop.pick(0, "TWO.NC"); });
    shop.machine().after(150ms, [&] {
        EXPECT_EQ(shop.window().caption(), "PART.NC to Mill - Kelvane Lite") << "it goes on";
        shop.machine().after(100ms, [&] { shop.machine().sends(xon); });
        shop.pick(0, "TWO.NC");
    });
    shop.send();
    shop.desk.loop.run_until([&] { return shop.received().ends_with("22\r\n") && shop.idle(); });
    EXPECT_LT(shop.received().size(), 100U);
    EXPECT_EQ(shop.machine().times_opened(), 2);
}

TEST(Send, AModalFormLeavesItAloneAndStopAndSendWorkBesideIt) {
    Shop_floor shop({}, std::string(2000, 'A') + "\r\n");
    auto& form = shop.all().directories_form;
    std::size_t when_paused = 0;
    shop.machine().after(500ms, [&] { shop.window().ConfigMenuItem[4].click(); });
    shop.machine().after(1s, [&] {
        EXPECT_TRUE(form.visible());
        EXPECT_GT(shop.received().size(), 800U);
        shop.window().Stop_button.click();
    });
    shop.machine().after(1100ms, [&] { when_paused = shop.received().size(); });
    shop.machine().after(3s, [&] {
        EXPECT_EQ(shop.received().size(), when_paused);
        form.close();
        shop.window().Send_button.click();
    });
    shop.send();
    EXPECT_EQ(shop.received(), std::string(2000, 'A') + "\r\n");
    for (std::size_t byte = 1; byte < when_paused; ++byte) {
        ASSERT_LT(shop.machine().times()[byte] - shop.machine().times()[byte - 1], 50ms);
    }
}

// The command whose dialog is open has not been given yet.
TEST(Send, AnOpenFileDialogLeavesItAloneAndCancellingItToo) {
    Shop_floor shop({}, std::string(2000, 'A') + "\r\n");
    std::size_t when_opened = 0;
    shop.machine().after(500ms, [&] {
        when_opened = shop.received().size();
        shop.desk.file_dialog.stays_open = true;
        shop.window().FileMenuItem[0].click();
    });
    shop.machine().after(1s, [&] { shop.window().Stop_button.click(); });
    shop.machine().after(2s, [&] {
        EXPECT_GT(shop.received().size(), when_opened + 400);
        EXPECT_LT(shop.received().size(), 1200U);
        shop.window().Send_button.click();
    });
    shop.machine().after(2500ms, [&] {
        shop.desk.file_dialog.stays_open = false;
        shop.desk.loop.wake();
    });
    shop.send();
    EXPECT_EQ(shop.received(), std::string(2000, 'A') + "\r\n");
    EXPECT_TRUE(shop.idle());
}

TEST(Send, AProgramSupplyRepeatsItAndAnAlarmEndsIt) {
    Shop_floor shop({{7, "%"}}, part);
    shop.start();
    Transfer_control& control = shop.window().control;
    control.DNC_cycle = 1;
    shop.machine().after(1s, [&] {
        EXPECT_EQ(shop.received(), "%" + std::string(part)) << "each pass waits for an Xon";
        shop.machine().after_bytes(30, [&] { control.DNC_alarm = true; });
        shop.machine().sends(xon);
    });
    shop.send();
    EXPECT_EQ(shop.received(), "%" + std::string(part) + "%O0001\r\nG0X1\r\n");
    EXPECT_TRUE(shop.idle());
}

TEST(Send, ClosingTheWindowEndsItInEveryState) {
    for (const auto when : {50ms, 150ms, 400ms}) {
        Shop_floor shop({}, std::string(300, 'A') + "\r\n");
        shop.machine().after_bytes(40, [&] { shop.machine().sends(std::string(99, *xon)); });
        shop.boxes().expect("PART.NC is being sent", Message_answer::yes);
        shop.machine().after(when, [&] { shop.window().close(); });
        shop.send();
        EXPECT_TRUE(shop.idle());
        EXPECT_TRUE(shop.desk.windows.ended);
        EXPECT_LT(shop.desk.loop.now(), 1s);
    }
}

TEST(Waiting, WakesUpAFewTimesASecondAndMissesNothing) {
    const auto wake_ups = [](Shop_floor& shop) {
        int count = 0;
        const Clock_time end = shop.desk.loop.now() + 10s;
        shop.machine().after(10s, [] {});
        shop.desk.loop.run_until([&] { return ++count > 0 && shop.desk.loop.now() >= end; });
        return count;
    };
    constexpr int most = 60;
    Shop_floor shop({}, std::string(500, 'A') + "\r\n");
    shop.start();
    EXPECT_LE(wake_ups(shop), most) << "idle";
    shop.receive();
    EXPECT_LE(wake_ups(shop), most) << "for data";
    shop.machine().sends("%\r\n");
    shop.desk.loop.run_until([&] { return shop.desk.machine.in_buffer_count() > 0; });
    const Clock_time came = shop.desk.loop.now();
    shop.desk.loop.run_until([&] { return shop.window().control.receiving() == 1; });
    EXPECT_LE(shop.desk.loop.now() - came, 50ms);
    shop.wait_until_idle();
    shop.pick(0, "PART.NC");
    EXPECT_LE(wake_ups(shop), most) << "for Xon or Send";
    shop.window().Send_button.click();
    shop.pass(100ms);
    shop.machine().sends(xoff);
    shop.pass(100ms);
    EXPECT_LE(wake_ups(shop), most) << "held by Xoff";
    shop.machine().sends(xon);
    shop.pass(300ms);
    shop.window().Stop_button.click();
    shop.pass(100ms);
    EXPECT_LE(wake_ups(shop), most) << "paused";
}

}  // namespace
}  // namespace kelvane::testing
