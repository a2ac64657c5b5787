// The windows that look into the line: the line monitor, and the test of a line.

#include <gtest/gtest.h>
#include <string>

#include "line/line_monitor_form.h"
#include "support/headless_platform.h"
#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;

const std::string head = "Seconds since 21.11.26 10:30, > to the machine, < from it\n";

/// An open port whose crossing bytes are made up.
class Line_monitor_test : public ::testing::Test {
  protected:
    Line_monitor_test() {
        form.show();
        desk.loop.run_for(1s);
    }
    void cross(Line_direction direction, const std::string& bytes) {
        if (desk.machine.on_crossing) {
            desk.machine.on_crossing(direction, bytes);
        }
    }
    std::string shown() {
        std::string all;
        for (const Log_text::Part& part : form.view.Crossed_txt.parts()) {
            all += part.text + "\n";
        }
        return all;
    }
    void save_as(const std::string& path) {
        desk.file_dialog.answers.push_back({File_purpose::save, path});
    }

    Headless_platform desk;
    Line_watch watch{desk.machine};
    Line_monitor_form form{desk.platform, watch};
};

TEST_F(Line_monitor_test, shows_both_directions_apart_as_they_cross) {
    cross(Line_direction::from_machine, "\x11");
    desk.loop.run_for(60ms);
    cross(Line_direction::to_machine, "N1 G0\r\nN2");
    EXPECT_EQ(shown(), "");
    desk.loop.run_for(60ms);
    const std::string before = "    1.000 < <DC1>\n    1.060 > N1 G0<CR><LF>\n          > N2";
    EXPECT_EQ(shown(), before + "\n");
    cross(Line_direction::to_machine, "\r\nM30\r\n");
    desk.loop.run_for(110ms);
    EXPECT_EQ(shown(), before + "<CR><LF>\n          > M30<CR><LF>\n");
    EXPECT_EQ(form.view.Crossed_txt.parts()[0].side, Log_text::Side::incoming);
    EXPECT_EQ(form.view.Crossed_txt.parts()[1].side, Log_text::Side::outgoing);
    EXPECT_EQ(form.view.crossed_label.caption(), "> to the machine: 16    < from the machine: 1");
    form.view.Form_lst.choose(2);
    EXPECT_EQ(shown().substr(0, 19), "    1.000 < 11\n    ");
    form.Clear_button.click();
    EXPECT_EQ(shown(), "");
}

TEST_F(Line_monitor_test, paused_it_stays_as_it_is_and_loses_nothing) {
    form.Pause_button.click();
    EXPECT_EQ(form.Pause_button.caption(), "&Go on");
    cross(Line_direction::to_machine, "N1");
    desk.loop.run_for(1s);
    EXPECT_EQ(shown(), "");
    form.Pause_button.click();
    desk.loop.run_for(110ms);
    EXPECT_EQ(shown(), "    1.000 > N1\n");
}

TEST_F(Line_monitor_test, closed_it_does_not_look_and_keeps_nothing) {
    cross(Line_direction::to_machine, "N1");
    form.Close_button.click();
    EXPECT_FALSE(desk.machine.on_crossing);
    EXPECT_EQ(desk.loop.timers().next_due(), std::nullopt);
    form.show();
    EXPECT_TRUE(desk.machine.on_crossing);
    EXPECT_EQ(shown(), "");
}

TEST_F(Line_monitor_test, of_a_flood_the_end_is_shown_and_nothing_ticks_after_it) {
    std::string block;
    for (int i = 0; i < 4000; ++i) {
        block = "N" + std::to_string(i) + " X" + std::string(70, '1') + "\n";
        cross(i % 3 == 0 ? Line_direction::from_machine : Line_direction::to_machine, block);
        if (i % 100 == 0) {
            desk.loop.run_for(20ms);
        }
    }
    desk.loop.run_for(5s);
    EXPECT_EQ(desk.loop.timers().next_due(), std::nullopt);
    EXPECT_EQ(head + shown(), form.view.text());
    EXPECT_TRUE(shown().find("N3999") != std::string::npos);
    EXPECT_TRUE(shown().find("N0 ") == std::string::npos);
}

TEST_F(Line_monitor_test, the_log_is_saved_and_a_failure_told) {
    cross(Line_direction::to_machine, "N1");
    desk.file_dialog.filter = "NC|*.nc";
    save_as("/nc/log");
    form.Save_button.click();
    EXPECT_EQ(desk.files.content("/nc/log.txt"), head + "    1.000 > N1\n");
    EXPECT_EQ(desk.file_dialog.filter, "NC|*.nc");

    save_as("/nc/log.txt");
    save_as("/nc/log2.txt");
    desk.boxes.expect("already exists. Overwrite existing file?", Message_answer::no);
    desk.boxes.expect("could not be saved as /nc/log2.txt\nNo space left on device");
    desk.files.fail("replace", "log2.txt", "No space left on device");
    form.Save_button.click();
    EXPECT_EQ(desk.files.content("/nc/log2.txt"), "(missing)");
}

/// The window open on the line of a machine with even parity.
class Test_line_test : public ::testing::Test {
  protected:
    Test_line_test() {
        shop.machine_file("Mill", {{4, " 0"}});
        shop.start();
        machine.from_machine = Machine_signals{true, false, true, false};
    }
    void open() { shop.window().ToolsMenuItem[1].click(); }
    /// The last part of the view.
    std::string last_shown() {
        shop.pass(110ms);
        return form.view.Crossed_txt.parts().back().text.substr(10);
    }

    Shop_floor shop;
    Scripted_machine& machine = shop.machine();
    Test_line_form& form = shop.all().test_line_form;
};

TEST_F(Test_line_test, shows_what_the_machine_does_and_sends_by_hand) {
    open();
    EXPECT_EQ(form.state_label.caption(), "The line is open.");
    EXPECT_TRUE(form.machine_label.caption().starts_with("Mill: COM1 (/dev/ttyS0), 9600,N,8,1"))
        << form.machine_label.caption();
    EXPECT_EQ(form.cts_label.caption() + form.dsr_label.caption() + form.dcd_label.caption() +
                  form.ri_label.caption(),
              "CTS: onDSR: offDCD: onRI: off");
    machine.from_machine = std::nullopt;
    machine.errors.framing = 2;
    machine.sends("AB");
    shop.pass(110ms);
    EXPECT_EQ(form.cts_label.caption(), "CTS: not known");
    EXPECT_EQ(form.errors_label.caption(),
              "Framing errors 2, parity errors 0, overruns 0, breaks 0\n"
              "2 of 2 characters came with framing errors: the baud rate is wrong");
    EXPECT_EQ(last_shown(), "< AB");

    form.DC1_button.click();
    form.DC3_button.click();
    form.Line_txt.set_text("N1");
    form.Line_txt.press_enter();
    shop.pass(1s);
    EXPECT_EQ(shop.received(), std::string("\x11\x93") + even("N1\r\n"));
    form.chk_DTR.click();
    EXPECT_FALSE(machine.dtr);
    EXPECT_TRUE(machine.rts);
    form.chk_RTS.click();
    EXPECT_FALSE(machine.rts);

    form.Close_button.click();
    EXPECT_FALSE(machine.is_open());
    EXPECT_FALSE(machine.on_crossing);
    EXPECT_EQ(shop.desk.loop.timers().next_due(), std::nullopt);
    open();
    EXPECT_TRUE(machine.dtr && machine.rts && form.chk_DTR.checked());
}

TEST_F(Test_line_test, a_line_that_cannot_be_opened_or_is_lost_is_told_once) {
    machine.refuse("/dev/test1 is in use by another program.");
    open();
    EXPECT_EQ(form.state_label.caption(), "/dev/test1 is in use by another program.");
    EXPECT_FALSE(form.Send_line_button.enabled());
    EXPECT_EQ(shop.desk.loop.timers().next_due(), std::nullopt);

    machine.refuse(std::nullopt);
    form.Open_button.click();
    EXPECT_TRUE(form.Send_line_button.enabled());
    form.Loop_back_button.click();
    machine.hang_up();
    shop.pass(200ms);
    EXPECT_EQ(form.state_label.caption(), "/dev/ttyS0 has gone");
    EXPECT_TRUE(form.Open_button.enabled());
    EXPECT_FALSE(form.Loop_back_button.enabled());
    EXPECT_EQ(form.Loop_back_button.caption(), "Loop-&back test");
}

TEST_F(Test_line_test, a_transfer_takes_the_line_over_and_has_every_byte_of_it) {
    shop.program("PART.NC", "%\r\nN1\r\n%\r\n");
    open();
    shop.pass(1s);
    shop.receive_from_machine("NEW.NC", even("%\r\nN1\r\n%\r\n"));
    EXPECT_EQ(form.state_label.caption(), "A transfer has taken the line over.");
    shop.wait_until_idle();
    EXPECT_EQ(shop.file("NEW.NC"), "%\r\nN1\r\n%\r\n");
    machine.after(100ms, [this] { machine.sends(xon); });
    shop.pick(0, "PART.NC");
    shop.pass(50ms);
    form.Open_button.click();
    EXPECT_TRUE(form.state_label.caption().starts_with("A transfer uses the line."));
    shop.wait_until_idle();
    form.Open_button.click();
    EXPECT_EQ(form.state_label.caption(), "The line is open.");
}

TEST_F(Test_line_test, the_loop_back_test_says_what_came_back) {
    const std::tuple<const char*, std::function<void()>, const char*> cases[] = {
        {"joined", [] {}, "All 256 characters came back as they were sent."},
        {"stopped", [this] { machine.after(100ms, [this] { form.Loop_back_button.click(); }); },
         "Stopped: "},
        {"disturbed", [this] { machine.after(100ms, [this] { machine.sends("x"); }); },
         "256 of 256 characters came back; the first difference: hex "},
        {"pulled", [this] { machine.after(100ms, [this] { machine.loops_back = false; }); },
         " of 256 characters came back, none after the one before hex "},
        {"open", [this] { machine.loops_back = false; }, "Nothing came back: pins 2 and 3"},
    };
    open();
    for (const auto& [name, happens, result] : cases) {
        machine.loops_back = true;
        happens();
        form.Loop_back_button.click();
        shop.pass(3s);
        EXPECT_NE(form.loop_back_label.caption().find(result), std::string::npos)
            << name << ": " << form.loop_back_label.caption();
    }
}

}  // namespace
}  // namespace kelvane::testing
