// Sends from the menu, on the scripted machine: what the wire sees, and when.

#include <gtest/gtest.h>

#include "frame/file_names.h"
#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;

constexpr const char* part = "O0001\r\nG0X1\r\nM30\r\n";

TEST(Send, PutsLeaderLinesAndTrailerOnTheWireInTheTapeCode) {
    struct Case {
        const char* what;
        std::initializer_list<std::pair<int, std::string>> lines;
        std::string wire;
    };
    const std::string body_crlf = "O0001\r\nG0X1\r\nM30\r\n";
    const Case cases[] = {
        {"no parity, CR LF", {}, in_tape_code(body_crlf, 2)},
        {"even parity, LF", {{4, " 0"}, {6, " 0"}}, in_tape_code("O0001\nG0X1\nM30\n", 0)},
        {"odd parity, CR", {{4, " 1"}, {6, " 1"}}, in_tape_code("O0001\rG0X1\rM30\r", 1)},
        {"even parity, LF CR", {{4, " 0"}, {6, " 2"}}, in_tape_code("O0001\n\rG0X1\n\rM30\n\r", 0)},
        {"EIA sends its own end of block",
         {{4, " 3"}, {6, "4<13>"}},
         in_tape_code("O0001\nG0X1\nM30\n", 3)},
        {"custom end of block",
         {{6, "4<13>LFLF"}},
         in_tape_code("O0001\r\n\nG0X1\r\n\nM30\r\n\n", 2)},
        {"leader and trailer",
         {{7, "%LFCR"}, {8, "%NUL"}},
         in_tape_code("%\n\r" + body_crlf + "%", 2) + '\0'},
        {"send mask", {{16, "G0"}}, in_tape_code("O1\r\nX1\r\nM3\r\n", 2)},
        {"skip at column 1 and later", {{14, "0X"}}, in_tape_code("O0001\r\nG\r\nM30\r\n", 2)},
        {"skip lines that contain", {{24, "X1"}}, in_tape_code("O0001\r\nM30\r\n", 2)},
        {"TV parity pads to even lines",
         {{21, "YES"}, {6, " 0"}},
         in_tape_code("O0001\nG0X1 \nM30\n", 2)},
        {"unknown end of block is CR LF", {{6, "41"}}, in_tape_code(body_crlf, 2)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Shop_floor shop;
        shop.machine_file("Mill", c.lines);
        shop.program("PART.NC", part);
        shop.send("PART.NC");
        EXPECT_EQ(shop.received(), c.wire);
        EXPECT_TRUE(shop.idle());
        EXPECT_EQ(shop.scratch(file_names::scratch), "(missing)");
    }
}

TEST(Send, OpensThePortAsTheRecordSays) {
    struct Case {
        const char* what;
        std::initializer_list<std::pair<int, std::string>> lines;
        int port;
        const char* settings;
    };
    const Case cases[] = {
        {"plain", {}, 1, "9600,N,8,1"},
        {"old port and baud", {{1, "2"}, {2, "1"}}, 2, "9600,N,8,1"},
        {"COM3, 4800, two stop bits", {{1, "COM3"}, {2, "BAUD4"}, {3, " 0"}}, 3, "4800,N,8,2"},
        {"7 bits, even: the table makes it", {{4, " 0"}}, 1, "9600,N,8,1"},
        {"8 bits, even", {{4, " 0"}, {25, "True"}}, 1, "9600,E,8,1"},
        {"8 bits, odd", {{4, " 1"}, {25, "TRUE"}, {3, " 1"}}, 1, "9600,O,8,1.5"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Shop_floor shop;
        shop.machine_file("Mill", c.lines);
        shop.program("PART.NC", part);
        shop.send("PART.NC");
        EXPECT_EQ(shop.machine().settings().com_port, c.port);
        EXPECT_EQ(shop.machine().settings().settings, c.settings);
        EXPECT_EQ(shop.machine().settings().handshaking, Handshaking::none);
        EXPECT_TRUE(shop.machine().settings().null_discard);
    }
}

TEST(Send, HoldsWithinAChunkOfTheMachinesXoff) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("PART.NC", std::string(200, 'A') + "\r\n");
    std::size_t at_resume = 0;
    Clock_time resumed{};
    shop.machine().after_bytes(40).runs([&] {
        shop.machine().sends(xoff);
        shop.desk.loop.after(2s, [&] {
            at_resume = shop.received().size();
            resumed = shop.desk.loop.now();
            EXPECT_NE(shop.window().status_label.caption().find("held by Xoff"), std::string::npos);
            shop.machine().sends(xon);
        });
    });
    shop.send("PART.NC");
    EXPECT_EQ(shop.received().size(), 202U);
    EXPECT_LE(at_resume, 41U + 2 + 5) << "one character time for the Xoff, two queued, one chunk";
    EXPECT_GE(shop.machine().times()[at_resume] - resumed, 250ms) << "the rest after an Xon";
    EXPECT_LE(shop.machine().most_queued(), 7U);
}

TEST(Send, KeepsTheLineBusy) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("PART.NC", std::string(960, 'A'));
    shop.send("PART.NC");
    const auto& times = shop.machine().times();
    const double seconds = std::chrono::duration<double>(times.back() - times.front()).count();
    EXPECT_NEAR(seconds, 961.0 / 960.0, 0.01) << "962 characters at 10 bits and 9600 baud";
}

TEST(Send, WaitsWhileCtsIsLow) {
    Shop_floor shop;
    shop.machine_file("Mill", {{5, " 2"}});
    shop.program("PART.NC", part);
    shop.machine().set_cts(false);
    shop.machine().after(3s).runs([&] {
        EXPECT_EQ(shop.received(), "");
        EXPECT_NE(shop.window().status_label.caption().find("CTS low"), std::string::npos);
        shop.machine().set_cts(true);
    });
    shop.send("PART.NC");
    EXPECT_EQ(shop.received(), part);
}

TEST(Send, PausesAfterCharactersBlocksAndExclamationMarks) {
    Shop_floor shop;
    shop.machine_file("Mill", {{19, "20"}, {22, "500"}});
    shop.desk.files.put("/kelvane/!delay", "2000\r\n");
    shop.program("PART.NC", "AB\r\n!wait\r\nCD\r\n");
    shop.send("PART.NC");
    ASSERT_EQ(shop.received(), "AB\r\nCD\r\n");
    const auto& times = shop.machine().times();
    EXPECT_GE(times[1] - times[0], 20ms);
    EXPECT_LT(times[1] - times[0], 25ms);
    EXPECT_GE(times[4] - times[3], 2520ms);
}

TEST(Send, StartsByTheSendButtonToo) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("PART.NC", part);
    shop.start();
    shop.presses(shop.window().Send_button, 5s);
    shop.send_without_start("PART.NC");
    EXPECT_EQ(shop.received(), part);
    EXPECT_GE(shop.machine().times().front(), 5s);
}

TEST(Send, StopBeforeTheStartSendsNothing) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("PART.NC", part);
    shop.start();
    shop.presses(shop.window().Stop_button, 1s);
    shop.send_without_start("PART.NC");
    EXPECT_EQ(shop.received(), "");
    EXPECT_TRUE(shop.idle());
    EXPECT_EQ(shop.window().Stop_button.caption(), "Stop");
    EXPECT_EQ(shop.scratch(file_names::scratch), "(missing)");
}

TEST(Send, StopPausesUnderXonXoffAndSendGoesOnToTheEnd) {
    Shop_floor shop;
    shop.machine_file("Mill");
    const std::string text = "N1\r\nN2\r\nN3\r\nN4\r\nN5\r\nN6\r\nN7\r\n";
    shop.program("PART.NC", text);
    shop.machine().after_bytes(6).runs([&] {
        shop.window().Stop_button.click();
        EXPECT_EQ(shop.window().Stop_button.caption(), "Reset");
        shop.machine().after(1s).runs([&] { shop.machine().sends(xon); });
        shop.machine().after(4s).runs([&] {
            EXPECT_LE(shop.received().size(), 6U + 7U)
                << "an Xon does not end the operator's pause";
            shop.window().Send_button.click();
        });
    });
    shop.send("PART.NC");
    EXPECT_EQ(shop.received(), text);
}

TEST(Send, SecondStopAbortsWithinTheChunkAndWithoutXonXoffTheFirstEndsTheLine) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("PART.NC", std::string(100, 'A') + "\r\nB\r\n");
    shop.machine().after_bytes(20).runs([&] {
        shop.window().Stop_button.click();
        shop.window().Stop_button.click();
    });
    shop.send("PART.NC");
    EXPECT_LE(shop.received().size(), 27U);
    EXPECT_TRUE(shop.idle());

    Shop_floor plain;
    plain.machine_file("Mill", {{5, " 0"}, {8, "%"}});
    plain.program("PART.NC", std::string(100, 'A') + "\r\nB\r\n");
    plain.machine().after_bytes(20).runs([&] { plain.window().Stop_button.click(); });
    plain.send("PART.NC");
    EXPECT_EQ(plain.received(), std::string(100, 'A') + "\r\n");
}

TEST(Send, ALineFeedOnlyFileReachesTheMachineWithItsOwnEndOfBlock) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("PART.NC", "O1\nG0\n");
    shop.send("PART.NC");
    EXPECT_EQ(shop.received(), "O1\r\nG0\r\n");
}

TEST(Send, SelectCodesGoFirstInTheMachinesCode) {
    Shop_floor shop;
    shop.machine_file("Mill", {{4, " 3"}});
    shop.desk.files.put("/kelvane/Switchbox codes for Mill", "A1<18>\r\nnot this\r\n");
    shop.program("PART.NC", "G0\r\n");
    shop.send("PART.NC");
    EXPECT_EQ(shop.received(), eia_code("A1\x12") + eia_code("G0\n"));
    EXPECT_EQ(shop.desk.desktop.beeps, 2) << "at the start and at the end";
}

TEST(Send, AProgramThatCannotBeExpandedSendsNothing) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.desk.files.put("/kelvane/Switchbox codes for Mill", "A1\r\n");
    shop.program("PART.NC", "G0\r\nCALL MISSING.NC\r\n");
    shop.boxes().expect("MISSING.NC");
    shop.send_without_start("PART.NC");
    EXPECT_EQ(shop.received(), "");
    EXPECT_TRUE(shop.idle());
}

TEST(Send, TheWorkingCopyItselfIsNeitherSentNorReceivedInto) {
    const std::string copy = "/kelvane/scratchpad data 5";
    for (const int item : {0, 1, 3}) {
        SCOPED_TRACE(item);
        Shop_floor shop;
        shop.machine_file("Mill");
        shop.desk.files.put(copy, "all that is left of a receive");
        if (item == 1) {
            shop.boxes().expect("Overwrite existing file?", Message_answer::yes);
        }
        shop.boxes().expect("The program itself works with this file");
        shop.start();
        shop.desk.file_dialog.answers = {copy};
        shop.window().FileMenuItem[static_cast<std::size_t>(item)].click();
        EXPECT_EQ(shop.desk.files.content(copy), "all that is left of a receive");
        EXPECT_TRUE(shop.idle());
    }
}

TEST(BinarySend, CarriesEveryByteValueWithFlowControl) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    Shop_floor shop;
    shop.machine_file("Mill", {{4, " 0"}, {7, "LEADER"}, {16, "ABC"}});
    shop.program("IMAGE", all);
    shop.machine().after_bytes(100).runs([&] {
        shop.machine().sends(xoff);
        shop.machine().after(1s).runs([&] { shop.machine().sends(xon); });
    });
    shop.binary_send("IMAGE");
    EXPECT_EQ(shop.received(), all);
    EXPECT_FALSE(shop.machine().settings().null_discard);
    EXPECT_LE(shop.machine().most_queued(), 3U);
    EXPECT_TRUE(shop.idle());
}

TEST(Send, TellsAPortThatCannotBeOpenedOrGoesAway) {
    Shop_floor shop;
    shop.machine_file("Mill", {{1, "COM7"}});
    shop.program("PART.NC", part);
    shop.machine().refuse(Port_error::in_use, "COM7 is in use by another program.");
    shop.boxes().expect("COM7 port is not available\nSelect a different COM port");
    shop.send_without_start("PART.NC");
    EXPECT_TRUE(shop.idle());
    EXPECT_NE(shop.log().find("in use by another"), std::string::npos);

    shop.machine().refuse(Port_error::none, "");
    shop.machine().after_bytes(5).runs([&] { shop.machine().hang_up(); });
    shop.boxes().expect("COM7 is no longer there");
    shop.send("PART.NC");
    EXPECT_TRUE(shop.idle());
}

TEST(Send, AnUnreadableOrCutSettingsFileIsToldAndTheSendGoesOn) {
    for (const bool exists : {false, true}) {
        Shop_floor shop;
        shop.machine_file("Mill");
        const std::string path = "/kelvane/Editor COM port settings for Mill";
        shop.desk.files.remove(path);
        if (exists) {
            shop.desk.files.put(path, "COM5\r\nBAUD 3\r\n 2\r\n 0\r\n");
        }
        shop.program("PART.NC", part);
        shop.boxes().expect("Using default COM port configuration");
        shop.send("PART.NC");
        EXPECT_EQ(shop.received(), even(part));
        EXPECT_EQ(shop.machine().settings().com_port, exists ? 5 : 1);
    }
}

TEST(Send, ACommandPickedDuringASendEndsItAndThenStarts) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.program("ONE.NC", std::string(500, '1') + "\r\n");
    shop.program("TWO.NC", "22\r\n");
    shop.machine().after_bytes(50).runs(
        [&] { shop.machine().after(10ms).runs([&] { shop.send("TWO.NC"); }); });
    shop.send("ONE.NC");
    shop.desk.loop.run_until([&] { return shop.received().ends_with("22\r\n") && shop.idle(); });
    EXPECT_LT(shop.received().size(), 100U);
    EXPECT_EQ(shop.machine().times_opened(), 2);
}

TEST(Send, ClosingTheWindowEndsItInEveryState) {
    for (const auto when : {50ms, 150ms, 400ms}) {
        Shop_floor shop;
        shop.machine_file("Mill");
        shop.program("PART.NC", std::string(300, 'A') + "\r\n");
        shop.machine().after_bytes(40).runs([&] { shop.machine().sends(std::string(99, *xon)); });
        shop.desk.loop.after(when, [&] { shop.window().close(); });
        shop.send("PART.NC");
        EXPECT_TRUE(shop.idle());
        EXPECT_TRUE(shop.desk.windows.ended);
        EXPECT_LT(shop.desk.loop.now(), 1s);
    }
}

}  // namespace
}  // namespace kelvane::testing
