// What the window says of transfers, and the log that is kept of them.

#include <gtest/gtest.h>

#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

TEST(Desk, SaysBeforeDuringAndAfterASendWhatGoesOnAndKeepsALog) {
    std::string blocks;
    for (int block = 100; block < 200; ++block) {
        blocks += "N" + std::to_string(block) + " G1 X1.\r\n";
    }
    Shop_floor shop({{4, " 0"}}, blocks);
    const auto says = [&](const std::string& text) {
        return shop.status().find(text) != std::string::npos;
    };
    shop.start();
    EXPECT_TRUE(shop.window().first_steps.visible());
    EXPECT_EQ(shop.status(), "Mill \xb7 COM1 (/dev/ttyS0) \xb7 9600 \xb7 ASCII even \xb7 Xon/Xoff");
    shop.window().Send_button.click();
    EXPECT_TRUE(shop.status().starts_with("Nothing waits to be sent")) << shop.status();
    shop.window().Stop_button.click();
    EXPECT_TRUE(shop.status().starts_with("Nothing is being sent or")) << shop.status();
    shop.window().Send_button.click();
    EXPECT_TRUE(shop.status().starts_with("Nothing waits to be sent")) << "after Stop, too";
    shop.pick(0, "PART.NC");
    EXPECT_EQ(shop.desk.file_dialog.shown_title, "Send to Mill");
    shop.pass(29s);
    EXPECT_FALSE(says("The machine does not ask")) << shop.status();
    shop.pass(2s);
    EXPECT_TRUE(says("The machine does not ask")) << shop.status();
    shop.machine().sends(xon);
    shop.pass(500ms);
    shop.machine().sends(xoff);
    shop.pass(300ms);
    EXPECT_TRUE(says(" of 100, ") && says(" of 1,300 bytes") && says(" left")) << shop.status();
    shop.window().Stop_button.click();
    shop.pass(60s);
    shop.window().Send_button.click();
    shop.pass(600ms);
    EXPECT_TRUE(says("0:00 left")) << "as fast as the line is, not the operator: " << shop.status();
    shop.machine().sends(xoff);
    shop.pass(100ms);
    const auto bytes_told = [&shop] {
        const std::string status = shop.status();
        const std::size_t end = status.find(" of 1,300 bytes");
        const std::size_t begin = status.rfind(' ', end - 1) + 1;
        return status.substr(begin, end - begin);
    };
    const std::string held_at = bytes_told();
    const State_field::View& field = shop.window().state_field.view();
    EXPECT_EQ(field.words, "Held by Xoff");
    EXPECT_TRUE(field.share.ends_with(" %") && field.details.starts_with("PART.NC to Mill on COM1"))
        << field.share << field.details;
    shop.window().Stop_button.click();
    shop.window().Stop_button.click();
    shop.wait_until_idle();
    EXPECT_TRUE(says("Stopped at line ") && says(", N1") && says(" of 1,300 bytes of PART.NC"))
        << shop.status();
    EXPECT_EQ(bytes_told(), held_at) << "the broken line has not left";
    EXPECT_TRUE(field.advice.starts_with("The last block that has left for certain: line "));
    shop.send();
    EXPECT_TRUE(says("Sent PART.NC to Mill: 1,300 bytes, 100 lines in 0:0")) << shop.status();
    EXPECT_TRUE(field.words == "Sent" && field.kind == State_field::Kind::done);
    EXPECT_FALSE(shop.window().first_steps.visible());

    const std::string log =
        shop.desk.files.content(shop.desk.files.program_path(file_names::transfer_log));
    EXPECT_TRUE(log.starts_with("21.11.26 10:30\tMill\tsent\t/nc/PART.NC\t")) << log;
    EXPECT_LT(log.find("\tstopped at line "), log.find("\tdone\t")) << log;
}

TEST(Desk, SaysHowFarABinaryFileAndAProgramThatCallsFilesAre) {
    const struct {
        std::size_t item;
        std::string program;
        const char *during, *after;
    } cases[] = {
        {4, std::string(3000, 'x'), " of 3,000 bytes  |  0:01, 0:01 left", "Stopped"},
        {0, "%\r\nCALL SUB.NC (3 TIMES)\r\n%\r\n", "line 2 of 3, 1,", "line 2, N100 G1 X10., 1,"},
    };
    for (const auto& c : cases) {
        Shop_floor shop({{5, " 0"}}, c.program);
        std::string called;
        for (int line = 0; line < 60; ++line) {
            called += "N100 G1 X10.\r\n";
        }
        shop.program("SUB.NC", called);
        shop.pick(c.item, "PART.NC");
        shop.pass(1s);
        shop.window().Send_button.click();
        shop.pass(1500ms);
        EXPECT_NE(shop.status().find(c.during), std::string::npos) << shop.status();
        shop.window().Stop_button.click();
        shop.wait_until_idle();
        EXPECT_NE(shop.status().find(c.after), std::string::npos) << shop.status();
    }
}

TEST(Desk, SaysBeforeTheStartWhatIsOddInAProgram) {
    const struct {
        Setting_lines lines;
        std::string program, said;
    } cases[] = {
        {{{7, "%LFCR"}, {8, "%"}}, "%\r\nN1\r\n%\r\n", "so have the leader and the trailer: the"},
        {{{8, "%"}}, "%\r\n", "so has the trailer: the machine gets both"},
        {{{7, "%LFCR"}}, "N1 %\r\n", ""},
        {{{4, " 3"}}, "N1\r\n(\"A\" = #1)\r\n", "characters have no code in EIA: first in line 2"},
        {{{4, " 3"}, {16, "\"#="}, {24, "M6"}}, "N1\"\r\nM6 ^\r\n", ""},
        {{}, "N1 \xe4\r\n", "1 character has no code in ASCII no parity: line 1"},
    };
    for (const auto& c : cases) {
        Shop_floor shop(c.lines, c.program);
        shop.pick(0, "PART.NC");
        shop.pass(1s);
        const std::string& advice = shop.window().state_field.view().advice;
        EXPECT_EQ(advice.empty(), c.said.empty()) << advice;
        EXPECT_NE(advice.find(c.said), std::string::npos) << advice;
    }
}

TEST(TransferLog, StaysBoundedByWholeLines) {
    Memory_files files;
    Transfer_record record;
    record.path = "/nc/" + std::string(1000, 'P');
    for (int transfer = 0; transfer < 600; ++transfer) {
        record.bytes = transfer;
        ASSERT_TRUE(add_to_transfer_log(files, record));
    }
    const std::string log = files.content(files.program_path(file_names::transfer_log));
    EXPECT_LE(log.size(), longest_transfer_log + 2000);
    EXPECT_TRUE(log.starts_with("\t\tsent\t/nc/P")) << log.substr(0, 50);
    EXPECT_NE(log.find("P\t599\t"), std::string::npos);
}

TEST(TransferLog, OneThatIsDamagedOrCannotBeWrittenStopsNothing) {
    Shop_floor shop({}, "N1\r\n");
    shop.desk.files.put(shop.desk.files.program_path(file_names::transfer_log),
                        std::string("\0\t\xff\r\n\n\r\ncut short", 17));
    shop.send();
    Transfer_log_form& form = shop.all().transfer_log_form;
    form.show();
    ASSERT_EQ(form.Transfers_tbl.rows().size(), 3U);
    EXPECT_EQ(form.Transfers_tbl.rows()[0][1], "Mill");
    EXPECT_EQ(form.Transfers_tbl.rows()[1][0], "cut short");
    shop.desk.files.fail("append", "Transfer log", "Read-only file system");
    shop.send();
    EXPECT_EQ(shop.window().state_field.view().advice,
              "The transfer log cannot be written: Read-only file system");
}

TEST(TransferLog, IsShownTheNewestFirstFilteredAndExported) {
    Shop_floor shop({}, "N1\r\nN2\r\n");
    shop.send();
    shop.wait_until_idle();
    Transfer_log_form& form = shop.all().transfer_log_form;
    form.show();
    shop.receive_from_machine("NEW \"1\".NC", "%\r\n");
    ASSERT_EQ(form.Transfers_tbl.rows().size(), 2U) << "renewed while it is open";
    EXPECT_EQ(form.Transfers_tbl.rows()[0][3], "/nc/NEW \"1\".NC");
    EXPECT_EQ(form.Transfers_tbl.rows()[0][5], "1") << "lines";
    EXPECT_EQ(shop.desk.desktop.notified.substr(0, 26), "Received NEW \"1\".NC from M");
    form.Filter_txt.set_text("mill part");
    EXPECT_EQ(form.count_label.caption(), "1 of 2 transfers");
    EXPECT_EQ(form.Transfers_tbl.rows()[0][2], "sent");
    form.Filter_txt.set_text("");
    form.Kind_lst.choose(3);
    EXPECT_FALSE(form.Export_button.enabled()) << "all were done";
    form.Kind_lst.choose(2);
    shop.desk.file_dialog.answers.push_back({File_purpose::save, "/nc/log"});
    form.Export_button.click();
    shop.pass(1ms);
    EXPECT_TRUE(shop.file("log.csv").starts_with("\"Time\",\"Machine\",")) << shop.file("log.csv");
    EXPECT_NE(shop.file("log.csv").find("\"/nc/NEW \"\"1\"\".NC\",\"3\","), std::string::npos);
    shop.receive_from_machine("\xC4.NC", "%\r\n");
    form.Filter_txt.set_text("\xC3\xA4.nc");
    EXPECT_EQ(form.Transfers_tbl.rows().size(), 1U) << "typed as UTF-8, capitals or not";
    shop.desk.file_dialog.answers.push_back({File_purpose::save, "/nc/latin.csv"});
    form.Export_button.click();
    shop.pass(1ms);
    EXPECT_TRUE(shop.file("latin.csv").starts_with("\xEF\xBB\xBF\"Time\"") &&
                shop.file("latin.csv").find("/nc/\xC3\x84.NC") != std::string::npos);
}

}  // namespace
}  // namespace kelvane::testing
