#include "desktop/serial_line.h"

#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <pty.h>
#include <string>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

#include "desktop/qt_serial_port.h"
#include "desktop/wire_clock.h"
#include "qt_test_application.h"
#include "support/memory_files.h"

namespace kelvane {
namespace {

using namespace std::chrono_literals;

TEST(Line_settings_test, are_taken_apart) {
    struct Row {
        const char* text;
        int baud;
        char parity;
        int data_bits;
        int stop_bits;
        int bits_per_character;
    };
    constexpr Row rows[] = {
        {"9600,N,8,1", 9600, 'N', 8, 1, 10},   {"28800,E,8,1", 28800, 'E', 8, 1, 11},
        {"110,N,8,2", 110, 'N', 8, 2, 11},     {"115200,O,7,1", 115200, 'O', 7, 1, 10},
        {"4800,N,8,1.5", 4800, 'N', 8, 2, 11},
    };
    for (const Row& row : rows) {
        const auto line = parse_line_settings(row.text);
        ASSERT_TRUE(line.has_value()) << row.text;
        EXPECT_EQ(line->baud, row.baud) << row.text;
        EXPECT_EQ(line->parity, row.parity) << row.text;
        EXPECT_EQ(line->data_bits, row.data_bits) << row.text;
        EXPECT_EQ(line->stop_bits, row.stop_bits) << row.text;
        EXPECT_EQ(line->bits_per_character(), row.bits_per_character) << row.text;
    }
    for (const char* text : {"", ",N,8,1", "9600", "9600,N,8", "9600,N,8,1,", "9600,N,8,3",
                             "9600,X,8,1", "9600,N,9,1", "-9600,N,8,1", "9600 ,N,8,1", "0,N,8,1"}) {
        EXPECT_FALSE(parse_line_settings(text).has_value()) << text;
    }
}

TEST(Wire_clock_test, counts_what_the_line_cannot_have_carried_yet) {
    Wire_clock wire;
    wire.start(1000);  // a character a millisecond
    EXPECT_EQ(wire.queued(5ms), 0U);
    wire.sent(5, 10ms);
    EXPECT_EQ(wire.queued(10ms), 5U);
    EXPECT_EQ(wire.queued(10ms + 1us), 5U);
    EXPECT_EQ(wire.queued(11ms), 4U);
    EXPECT_EQ(wire.time_until(2, 11ms), 2ms);
    wire.sent(3, 13ms);  // follows the two that still wait
    EXPECT_EQ(wire.queued(13ms), 5U);
    EXPECT_EQ(wire.queued(18ms - 1us), 1U);
    EXPECT_EQ(wire.queued(18ms), 0U);
    EXPECT_LE(wire.time_until(2, 17ms), 0ms);
}

/// A port on a pseudo-terminal, of which the test is the machine's end.
class Serial_line_test : public ::testing::Test {
  protected:
    void SetUp() override {
        int slave = -1;
        ASSERT_EQ(::openpty(&machine_, &slave, nullptr, nullptr, nullptr), 0);
        device_ = ::ttyname(slave);
        // Kept open, or the line would hang up whenever the port is closed.
        slave_ = slave;
        files_.put("/kelvane/Serial port devices", "COM1=" + device_ + "\r\n");
    }
    void TearDown() override {
        port_.close();
        hang_up();
        ::close(slave_);
    }

    [[nodiscard]] static Port_settings settings(const std::string& line = "115200,N,8,1") {
        Port_settings made;
        made.settings = line;
        return made;
    }
    void machine_sends(std::string_view bytes) {
        ASSERT_EQ(::write(machine_, bytes.data(), bytes.size()),
                  static_cast<ssize_t>(bytes.size()));
    }
    /// What arrives at the machine within the next `count` bytes.
    std::string machine_receives(std::size_t count) {
        std::string received(count, '\0');
        const ssize_t got = ::read(machine_, received.data(), count);
        return received.substr(0, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    }
    [[nodiscard]] bool machine_has_input() const { return look_at_line(machine_).input; }
    std::string port_receives(std::size_t count) {
        std::string received;
        while (received.size() < count) {
            loop_.process_events();
            received += port_.input(0);
        }
        return received;
    }
    void hang_up() {
        if (machine_ >= 0) {
            ::close(std::exchange(machine_, -1));
        }
    }

    testing::Memory_files files_;
    Qt_event_loop loop_;
    Qt_serial_port port_{loop_, files_};
    std::string device_;
    int machine_ = -1;
    int slave_ = -1;
};

std::string all_bytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST_F(Serial_line_test, every_byte_goes_through_both_ways) {
    ASSERT_EQ(port_.open(settings()), Port_error::none) << port_.error_text();
    machine_sends(all_bytes());
    EXPECT_EQ(port_receives(256), all_bytes());
    port_.output(all_bytes());
    EXPECT_EQ(machine_receives(256), all_bytes());
}

TEST_F(Serial_line_test, nul_bytes_are_thrown_away_on_demand) {
    Port_settings made = settings();
    made.null_discard = true;
    ASSERT_EQ(port_.open(made), Port_error::none);
    machine_sends(all_bytes());
    machine_sends("end");
    EXPECT_EQ(port_receives(258), all_bytes().substr(1) + "end");
    machine_sends(std::string(3, '\0') + "x");
    EXPECT_EQ(port_receives(1), "x");
}

TEST_F(Serial_line_test, input_is_taken_in_pieces_and_in_order) {
    ASSERT_EQ(port_.open(settings()), Port_error::none);
    machine_sends("abcdef");
    while (port_.in_buffer_count() < 6) {
        loop_.process_events();
    }
    EXPECT_EQ(port_.input(1), "a");
    machine_sends("g");
    EXPECT_EQ(port_.input(4), "bcde");
    EXPECT_EQ(port_receives(2), "fg");
    EXPECT_EQ(port_.input(0), "");
}

TEST_F(Serial_line_test, old_input_is_thrown_away_at_opening) {
    ASSERT_EQ(port_.open(settings()), Port_error::none);
    port_.close();
    machine_sends("old\n");  // a closed line hands on whole lines only
    while (!look_at_line(slave_).input) {
        ::usleep(100);
    }
    ASSERT_EQ(port_.open(settings()), Port_error::none);
    machine_sends("new");
    EXPECT_EQ(port_receives(3), "new");
}

TEST_F(Serial_line_test, output_counts_as_queued_as_long_as_the_line_needs_for_it) {
    ASSERT_EQ(port_.open(settings("9600,N,8,1")), Port_error::none);
    EXPECT_DOUBLE_EQ(port_.characters_per_second(), 960);
    const Clock_time start = loop_.now();
    port_.output(std::string(50, 'x'));
    for (std::size_t queued = 50; queued > 0;) {
        queued = port_.out_buffer_count();
        const auto gone = static_cast<double>((loop_.now() - start).count()) * 960e-6;
        EXPECT_GE(static_cast<double>(queued), 50 - gone);
        EXPECT_LE(queued, 50U);
        loop_.process_events();
    }
    EXPECT_EQ(machine_receives(100), std::string(50, 'x'));
}

TEST_F(Serial_line_test, the_driver_handshakes_with_the_machines_own_characters) {
    struct Row {
        Handshaking handshaking;
        bool software;
        bool hardware;
    };
    constexpr Row rows[] = {{Handshaking::none, false, false},
                            {Handshaking::xon_xoff, true, false},
                            {Handshaking::rts_cts, false, true},
                            {Handshaking::both, true, true}};
    for (const Row& row : rows) {
        Port_settings made = settings();
        made.handshaking = row.handshaking;
        made.xon = '\x11';
        made.xoff = '\x93';
        ASSERT_EQ(port_.open(made), Port_error::none);
        termios line{};
        ASSERT_EQ(::tcgetattr(slave_, &line), 0);
        const tcflag_t software = row.software ? IXON | IXOFF : 0;
        EXPECT_EQ(line.c_iflag & static_cast<tcflag_t>(IXON | IXOFF | IXANY), software);
        EXPECT_EQ((line.c_cflag & static_cast<tcflag_t>(CRTSCTS)) != 0, row.hardware);
        EXPECT_EQ(line.c_cc[VSTART], 0x11);
        EXPECT_EQ(line.c_cc[VSTOP], 0x93);
    }
}

TEST_F(Serial_line_test, held_output_stays_queued_until_xon_and_never_holds_the_close) {
    Port_settings made = settings();
    made.handshaking = Handshaking::xon_xoff;
    ASSERT_EQ(port_.open(made), Port_error::none);
    machine_sends("\x13");
    machine_sends("x");
    EXPECT_EQ(port_receives(1), "x");  // any character but Xon resumes nothing
    port_.output("abc");
    for (int pass = 0; pass < 20; ++pass) {
        loop_.process_events();
        EXPECT_EQ(port_.out_buffer_count(), 3U);
    }
    EXPECT_FALSE(machine_has_input());
    machine_sends("\x11");
    while (port_.out_buffer_count() > 0) {
        loop_.process_events();
    }
    EXPECT_EQ(machine_receives(9), "abc");
    machine_sends("\x13y");
    EXPECT_EQ(port_receives(1), "y");
    port_.output(std::string(100'000, 'z'));
    port_.close();
    EXPECT_FALSE(port_.is_open());
}

TEST_F(Serial_line_test, a_line_that_hangs_up_is_closed_and_what_was_read_stays) {
    ASSERT_EQ(port_.open(settings()), Port_error::none);
    machine_sends("kept");
    while (port_.in_buffer_count() < 4) {
        loop_.process_events();
    }
    hang_up();
    while (!port_.lost()) {
        loop_.process_events();
    }
    EXPECT_FALSE(port_.is_open());
    EXPECT_EQ(port_.error_text(),
              device_ + " has gone: the adapter was pulled out or the line hung up.");
    EXPECT_EQ(port_.in_buffer_count(), 4U);
    EXPECT_EQ(port_.input(0), "kept");
    port_.output("into the void");
    EXPECT_EQ(port_.out_buffer_count(), 0U);
}

TEST_F(Serial_line_test, a_hang_up_is_seen_by_every_poll_without_the_loop) {
    ASSERT_EQ(port_.open(settings()), Port_error::none);
    hang_up();
    EXPECT_EQ(port_.out_buffer_count(), 0U);
    EXPECT_TRUE(port_.lost());
}

TEST_F(Serial_line_test, failures_to_open_are_told_apart) {
    Qt_serial_port other(loop_, files_);
    files_.put("/kelvane/Serial port devices",
               "COM1=" + device_ + "\nCOM2=/dev/no-such-tty\nCOM3=/dev/null\n");
    ASSERT_EQ(other.open(settings()), Port_error::none);
    EXPECT_EQ(port_.open(settings()), Port_error::in_use);
    EXPECT_EQ(port_.error_text(), device_ + " is in use by another program.");
    other.close();
    for (const int missing : {2, 3}) {
        Port_settings made = settings();
        made.com_port = missing;
        EXPECT_EQ(port_.open(made), Port_error::no_such_device) << missing;
        EXPECT_NE(port_.error_text().find("There is no serial device"), std::string::npos);
    }
    EXPECT_EQ(port_.open(settings(",N,8,1")), Port_error::bad_settings);
    EXPECT_FALSE(port_.is_open());
    EXPECT_EQ(port_.open(settings()), Port_error::none);
    EXPECT_EQ(port_.error_text(), "");
}

TEST_F(Serial_line_test, a_device_without_rights_names_the_group_to_join) {
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(::chmod(device_.c_str(), 0), 0);
    const bool changed = ::geteuid() == 0 && ::seteuid(nobody) == 0;
    EXPECT_EQ(port_.open(settings()), Port_error::no_permission);
    if (changed) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    EXPECT_NE(port_.error_text().find("It belongs to the group \""), std::string::npos)
        << port_.error_text();
}

TEST_F(Serial_line_test, a_device_without_modem_lines_is_clear_to_send) {
    EXPECT_FALSE(port_.cts_holding());
    ASSERT_EQ(port_.open(settings()), Port_error::none);
    EXPECT_TRUE(port_.cts_holding());
}

TEST_F(Serial_line_test, every_baud_rate_opens) {
    for (const char* baud : {"115200", "57600", "38400", "28800", "19200", "9600", "4800", "2400",
                             "1200", "600", "300", "110"}) {
        EXPECT_EQ(port_.open(settings(std::string(baud) + ",N,8,1.5")), Port_error::none) << baud;
    }
}

}  // namespace
}  // namespace kelvane
