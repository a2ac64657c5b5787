#include "desktop/serial_line.h"

#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "desktop/qt_serial_port.h"
#include "desktop/wire_clock.h"
#include "qt_test_application.h"
#include "support/in_time.h"
#include "support/memory_files.h"
#include "support/pty_line.h"

namespace kelvane {
namespace {

using namespace std::chrono_literals;

TEST(Line_settings_test, are_taken_apart) {
    const std::pair<const char*, const char*> cases[] = {{"9600,N,8,1", "9600 N 8 1 10"},
                                                         {"28800,E,8,1", "28800 E 8 1 11"},
                                                         {"110,N,8,2", "110 N 8 2 11"},
                                                         {"115200,O,7,1", "115200 O 7 1 10"},
                                                         {"4800,N,8,1.5", "4800 N 8 2 11"}};
    for (const auto& [text, parts] : cases) {
        const auto line = parse_line_settings(text);
        ASSERT_TRUE(line) << text;
        EXPECT_EQ(std::to_string(line->baud) + ' ' + line->parity + ' ' +
                      std::to_string(line->data_bits) + ' ' + std::to_string(line->stop_bits) +
                      ' ' + std::to_string(line->bits_per_character()),
                  parts);
    }
    for (const char* text : {"", ",N,8,1", "9600", "9600,N,8", "9600,N,8,1,", "9600,N,8,3",
                             "9600,X,8,1", "9600,N,9,1", "-9600,N,8,1", "9600 ,N,8,1", "0,N,8,1"}) {
        EXPECT_FALSE(parse_line_settings(text)) << text;
    }
}

TEST(Wire_clock_test, counts_what_the_line_cannot_have_carried_yet) {
    Wire_clock wire;
    wire.start(9600, 10);
    const Clock_time nominal = Clock_time(1s) / 960;
    EXPECT_GT(wire.duration(1), nominal);
    EXPECT_LE(wire.duration(1), nominal * 102 / 100);
    const Clock_time character = wire.duration(1000) / 1000;
    EXPECT_EQ(wire.queued(5ms), 0U);
    wire.sent(5, 10ms);
    EXPECT_EQ(wire.queued(10ms), 5U);
    EXPECT_EQ(wire.queued(10ms + 1us), 5U);
    EXPECT_EQ(wire.queued(10ms + character + 1us), 4U);
    const Clock_time third = 10ms + 3 * character + 10us;
    EXPECT_LE(wire.time_until(2, third), 0ms);
    EXPECT_GT(wire.time_until(1, third), 0ms);
    wire.sent(3, third);  // follows the two that still wait
    EXPECT_EQ(wire.queued(third), 5U);
    EXPECT_EQ(wire.queued(10ms + 8 * character - 1us), 1U);
    EXPECT_EQ(wire.queued(10ms + 8 * character + 10us), 0U);
}

/// A port on a pseudo-terminal, of which the test is the machine's end.
class Serial_line_test : public ::testing::Test {
  protected:
    Serial_line_test() {
        settings_.device = device_;
        settings_.settings = "115200,N,8,1";
    }
    ~Serial_line_test() override { ::close(slave_); }

    [[nodiscard]] Result<> open(const std::string& settings = "115200,N,8,1") {
        settings_.settings = settings;
        return port_.open(settings_);
    }
    std::string port_receives(std::size_t count) {
        wait_for_input(count);
        return port_.input(0);
    }
    void wait_for_input(std::size_t count) {
        testing::wait_for(loop_, [&] { return port_.in_buffer_count() >= count; });
    }

    testing::Pty_line machine_;
    const std::string device_ = machine_.device();
    /// Kept open, or the line would hang up whenever the port is closed.
    int slave_ = ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    Qt_event_loop loop_;
    Port_settings settings_;
    Qt_serial_port port_{loop_};
};

TEST_F(Serial_line_test, input_comes_in_order_but_for_nuls_that_are_thrown_away_on_demand) {
    for (const bool discard : {false, true}) {
        settings_.null_discard = discard;
        ASSERT_EQ(open().reason(), "");
        machine_.send(std::string("abc\0def", 7));
        wait_for_input(discard ? 6 : 7);
        EXPECT_EQ(port_.input(2), "ab");
        machine_.send("gh");
        EXPECT_EQ(port_receives(discard ? 6 : 7), discard ? "cdefgh" : std::string("c\0defgh", 7));
    }
}

TEST_F(Serial_line_test, old_input_is_thrown_away_at_opening) {
    ASSERT_TRUE(open());
    port_.close();
    machine_.send("old\n");  // a closed line hands on whole lines only
    while (!look_at_line(slave_).input) {
        ::usleep(100);
    }
    ASSERT_TRUE(open());
    machine_.send("new");
    EXPECT_EQ(port_receives(3), "new");
}

TEST_F(Serial_line_test, output_counts_as_queued_as_long_as_the_line_needs_for_it) {
    ASSERT_TRUE(open("9600,N,8,1"));
    EXPECT_DOUBLE_EQ(port_.characters_per_second(), 960);
    const Clock_time start = loop_.now();
    port_.output(std::string(50, 'x'));
    testing::wait_for(loop_, [&] {
        const std::size_t queued = port_.out_buffer_count();
        const auto gone = static_cast<double>((loop_.now() - start).count()) * 960e-6;
        EXPECT_GE(static_cast<double>(queued), 50 - gone);
        EXPECT_LE(queued, 50U);
        return queued == 0;
    });
    EXPECT_EQ(machine_.receive(50, testing::in_time), std::string(50, 'x'));
}

TEST_F(Serial_line_test, the_driver_handshakes_with_the_machines_own_characters) {
    settings_.xon = '\x11';
    settings_.xoff = '\x93';
    for (const Handshake by :
         {Handshake::none, Handshake::xon_xoff, Handshake::rts_cts, Handshake::both}) {
        settings_.handshake = by;
        const bool both = by == Handshake::both;
        ASSERT_TRUE(open());
        termios line{};
        ASSERT_EQ(::tcgetattr(slave_, &line), 0);
        const tcflag_t software = both || by == Handshake::xon_xoff ? IXON | IXOFF : 0;
        EXPECT_EQ(line.c_iflag & static_cast<tcflag_t>(IXON | IXOFF | IXANY), software);
        EXPECT_EQ((line.c_cflag & static_cast<tcflag_t>(CRTSCTS)) != 0,
                  both || by == Handshake::rts_cts);
        EXPECT_EQ(line.c_cc[VSTART], 0x11);
        EXPECT_EQ(line.c_cc[VSTOP], 0x93);
    }
}

TEST_F(Serial_line_test, held_output_stays_queued_until_xon_and_never_holds_the_close) {
    settings_.handshake = Handshake::xon_xoff;
    ASSERT_TRUE(open());
    machine_.send("\x13x");
    EXPECT_EQ(port_receives(1), "x");  // any character but Xon resumes nothing
    port_.output("abc");
    testing::wait_for(loop_, [&, pass = 0]() mutable {
        EXPECT_EQ(port_.out_buffer_count(), 3U);
        return ++pass == 20;
    });
    EXPECT_EQ(machine_.receive(1, 0ms), "");
    machine_.send("\x11");
    testing::wait_for(loop_, [&] { return port_.out_buffer_count() == 0; });
    EXPECT_EQ(machine_.receive(3, testing::in_time), "abc");
    machine_.send("\x13y");
    EXPECT_EQ(port_receives(1), "y");
    port_.output(std::string(100'000, 'z'));
    port_.close();
    EXPECT_FALSE(port_.is_open());
}

TEST_F(Serial_line_test, a_line_that_hangs_up_is_closed_and_what_was_read_stays) {
    ASSERT_TRUE(open());
    machine_.send("kept");
    wait_for_input(4);
    machine_.hang_up();
    testing::wait_for(loop_, [&] { return port_.lost().has_value(); });
    EXPECT_FALSE(port_.is_open());
    EXPECT_EQ(port_.lost(), device_ + " has gone: the adapter was pulled out or the line hung up.");
    EXPECT_EQ(port_.input(0), "kept");
    port_.output("into the void");
    EXPECT_EQ(port_.out_buffer_count(), 0U);
}

TEST_F(Serial_line_test, failures_to_open_are_told_apart) {
    Qt_serial_port other(loop_);
    ASSERT_TRUE(other.open(settings_));
    EXPECT_EQ(open().reason(), device_ + " is in use by another program.");
    other.close();
    const std::string lock =
        "/tmp/LCK.." + std::regex_replace(device_.substr(5), std::regex("/"), "_");
    for (const pid_t owner : {::getpid(), pid_t{2'000'000'000}}) {
        std::ofstream(lock) << owner << "\n";
        const bool runs = owner == ::getpid();
        EXPECT_NE(explain_open_failure(device_, true, "").find(runs ? "in use" : lock),
                  std::string::npos);
    }
    ::unlink(lock.c_str());
    for (const char* missing : {"/dev/no-such-tty", "/dev/null"}) {
        settings_.device = missing;
        EXPECT_NE(open().reason().find("There is no serial device"), std::string::npos) << missing;
    }
    settings_.device = device_;
    EXPECT_NE(open(",N,8,1").reason().find("no setting"), std::string::npos);
    EXPECT_FALSE(port_.is_open());

    constexpr uid_t nobody = 65534;
    constexpr gid_t others = 4242;
    ASSERT_TRUE(::geteuid() != 0 || ::chown(device_.c_str(), 0, others) == 0);
    for (const mode_t mode : {0660U, 0600U}) {
        ASSERT_EQ(::chmod(device_.c_str(), ::geteuid() == 0 ? mode : mode & 0060), 0);
        const bool changed = ::geteuid() == 0 && ::seteuid(nobody) == 0;
        const std::string reason = open().reason();
        ASSERT_TRUE(!changed || ::seteuid(0) == 0);
        EXPECT_TRUE(reason.starts_with("You have no permission to use ")) << reason;
        EXPECT_EQ(reason.find("sudo usermod -aG ") != std::string::npos, mode == 0660) << reason;
    }
}

TEST_F(Serial_line_test, a_line_without_modem_lines_is_clear_to_send) {
    EXPECT_FALSE(port_.cts_holding());
    ASSERT_TRUE(open());
    EXPECT_TRUE(port_.cts_holding());
}

}  // namespace
}  // namespace kelvane
