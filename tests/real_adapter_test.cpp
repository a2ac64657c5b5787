// The serial port on an adapter as it is: its clock slow, characters kept where no count shows
// them, speeds missing, modem lines that are dear to look at.

#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <sched.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

#include "desktop/cts_watch.h"
#include "desktop/line_speed.h"
#include "desktop/qt_serial_port.h"
#include "desktop/serial_line.h"
#include "desktop/serial_names.h"
#include "desktop/urgent_thread.h"
#include "desktop/wire_clock.h"
#include "modem_lines/modem_lines.h"
#include "qt_test_application.h"
#include "support/memory_files.h"
#include "support/program_process.h"
#include "support/pty_line.h"

namespace kelvane {
namespace {

using namespace std::chrono_literals;
using testing::Modem_lines;
using Departures = std::vector<Modem_lines::Departure>;

/// Characters that an Xoff would meet at worst in 100 kB, sent in chunks of 5 as soon as no more
/// than 2 are reckoned queued, to a chip of 256 bytes whose clock is slow. The sender is late now
/// and then, and rests.
double most_after_xoff(int baud, double clock_error) {
    Wire_clock wire;
    wire.start(baud, 10);
    const double real_us = 1e7 / baud * (1 + clock_error);
    std::mt19937 random(1);
    Clock_time now{};
    double free_at = 0;
    double most = 0;
    for (int chunk = 0; chunk < 20'000; ++chunk) {
        now += std::max(Clock_time(0), wire.time_until(2, now));
        now += chunk % 1000 == 0 ? Clock_time(random() % 3000) : Clock_time(0);
        wire.sent(5, now);
        const auto at = static_cast<double>(now.count());
        free_at = std::max(free_at, at) + 5 * real_us;
        most = std::max(most, (free_at - at) / real_us);
    }
    return most;
}

TEST(Wire_clock_test, a_slow_clock_never_piles_characters_up) {
    for (const int baud : {110, 1200, 9600, 38400, 57600, 115200}) {
        for (const double clock_error : {-0.005, 0.0, 0.005}) {
            EXPECT_LE(most_after_xoff(baud, clock_error), 10) << baud << ' ' << clock_error;
        }
    }
}

TEST(Wire_clock_test, a_line_is_at_rest_only_when_an_adapter_must_be_empty) {
    Wire_clock wire;
    wire.start(1'000'000, 1000);  // a character a millisecond and a margin
    EXPECT_LE(wire.time_until_rest(0ms), 0ms);
    wire.sent(1000, 0ms);
    const Clock_time end = wire.time_until(0, 0ms);
    EXPECT_EQ(wire.time_until_rest(0ms), end + 20ms + end / 100);
    wire.sent(1000, end + 10ms);  // a gap too short to empty it: still the same run
    const Clock_time second = end + 10ms + end;
    EXPECT_EQ(wire.time_until_rest(second), 20ms + second / 100);
}

TEST(Cts_watch_test, asks_whenever_the_count_cannot_be_believed) {
    struct Look {
        std::optional<int> changes;
        bool clear;
        Clock_time at;
        bool asks;
    };
    const std::vector<Look> no_count = {{{}, true, 0ms, true}, {{}, true, 1ms, true}};
    const std::vector<Look> kept = {
        {7, true, 0ms, true},     {7, true, 1ms, false},    {8, false, 2ms, true},
        {8, false, 3ms, true},    {9, true, 4ms, true},     {9, true, 103ms, false},
        {9, true, 104ms, true},   {9, true, 200ms, false},  {11, true, 201ms, true},
        {11, true, 202ms, false}, {11, false, 301ms, true}, {12, true, 302ms, true},
        {12, true, 303ms, true}};
    const std::vector<Look> unproved = {{7, true, 0ms, true},  {7, true, 1ms, true},
                                        {8, false, 2ms, true}, {9, true, 3ms, true},
                                        {9, true, 4ms, false}, {10, true, 5ms, true}};
    const std::vector<Look> standing = {
        {0, true, 0ms, true}, {0, false, 1ms, true}, {0, true, 2ms, true}, {0, true, 3ms, true}};
    for (const auto& [known, looks] : {std::pair(true, no_count), std::pair(true, kept),
                                       std::pair(false, unproved), std::pair(false, standing)}) {
        Cts_watch watch;
        watch.start(known);
        for (const Look& look : looks) {
            EXPECT_EQ(watch.must_ask(look.changes, look.at), look.asks) << look.at.count();
            if (look.asks) {
                watch.asked(look.changes, look.clear, look.at);
            }
            EXPECT_EQ(watch.clear(), look.clear) << look.at.count();
        }
    }
}

TEST(Line_speed_test, is_refused_when_no_receiver_would_follow_it) {
    EXPECT_EQ(speed_trouble("/dev/a", 115200, 117504), "");
    EXPECT_EQ(speed_trouble("/dev/a", 115200, 112896), "");
    EXPECT_EQ(speed_trouble("/dev/a", 9600, 9793),
              "/dev/a cannot run at 9600 baud; it would run at 9793. Choose a baud rate that it "
              "has, or another adapter.");
    EXPECT_NE(speed_trouble("/dev/a", 115200, 57600), "");
}

TEST(Serial_class_test, a_chip_is_told_not_to_hold_an_xoff_back_and_a_driver_known_by_its_name) {
    const testing::Program_directory folder;
    std::filesystem::create_directories(folder.path("ttyS0"));
    std::filesystem::create_directories(folder.path("ttyUSB0/device"));
    std::filesystem::create_symlink("/sys/bus/ftdi_sio", folder.path("ttyUSB0/device/driver"));
    folder.put("ttyS0/rx_trig_bytes", "14\n");
    const std::string classes = folder.path("");
    EXPECT_EQ(xoff_delay("/none/ttyS0", classes), 0);
    EXPECT_EQ(set_receive_trigger("/none/ttyS0", classes), 1);
    EXPECT_EQ(folder.content("ttyS0/rx_trig_bytes"), "1\n");
    EXPECT_EQ(set_receive_trigger("/none/ttyUSB0", classes), std::nullopt);
    EXPECT_TRUE(counts_cts_changes("/none/ttyUSB0", classes));
    EXPECT_FALSE(counts_cts_changes("/none/ttyS0", classes));
}

TEST(Lasting_name_test, goes_by_the_adapter_that_can_be_told_apart_else_by_the_socket) {
    const testing::Program_directory folder;
    for (const char* kind : {"by-id", "by-path"}) {
        std::filesystem::create_directories(folder.path(kind));
    }
    for (const char* node : {"ttyUSB0", "ttyUSB1", "ttyS0"}) {
        folder.put(node, "");
    }
    const std::pair<const char*, const char*> links[] = {{"by-id/usb-Maker_A1", "ttyUSB0"},
                                                         {"by-id/usb-Maker", "ttyUSB1"},
                                                         {"by-path/pci-usbv2-1", "ttyUSB1"},
                                                         {"by-path/pci-usb-1", "ttyUSB1"},
                                                         {"by-path/gone", "ttyUSB7"}};
    for (const auto& [link, node] : links) {
        std::filesystem::create_symlink("../" + std::string(node), folder.path(link));
    }
    const std::tuple<const char*, bool, const char*> cases[] = {
        {"ttyUSB0", true, "by-id/usb-Maker_A1"},
        {"ttyUSB0", false, "ttyUSB0"},
        {"ttyUSB1", false, "by-path/pci-usb-1"},
        {"ttyS0", false, "ttyS0"},
        {"ttyUSB7", true, "ttyUSB7"}};
    for (const auto& [node, numbered, name] : cases) {
        EXPECT_EQ(lasting_name(folder.path(node), numbered, {}, folder.path("")),
                  folder.path(name));
    }
    const auto with_twin = [&folder](const char* twin) {
        return lasting_name(folder.path("ttyUSB1"), true, {folder.path(twin)}, folder.path(""));
    };
    EXPECT_EQ(with_twin("ttyUSB0"), folder.path("by-id/usb-Maker")) << "each has its name";
    EXPECT_EQ(with_twin("ttyS0"), folder.path("by-path/pci-usb-1")) << "one name for the two";
    EXPECT_EQ(names_that_lead_to(folder.path("ttyUSB1"), folder.path("")).size(), 3U);
}

/// A port on an emulated adapter.
class Real_adapter : public ::testing::Test {
  protected:
    Real_adapter() {
        machine_.device().copy(lines_.device.data(), lines_.device.size() - 1);
        testing::emulate(&lines_);
        settings_.device = machine_.device();
        settings_.settings = "9600,N,8,1";
    }
    ~Real_adapter() override { testing::emulate(nullptr); }

    /// As a sender does it: chunks of 5 whenever less than 3 are queued, then all must leave.
    void send(std::size_t count) {
        for (std::size_t at = 0; at < count; at += 5) {
            testing::wait_for(loop_, [&] { return port_.out_buffer_count() <= 2; });
            port_.output("12345");
        }
        testing::wait_for(loop_, [&] { return port_.out_buffer_count() == 0; });
        port_.close();
    }
    [[nodiscard]] Departures departures() const {
        return {lines_.departures.begin(), lines_.departures.begin() + lines_.departure_count};
    }

    testing::Pty_line machine_;
    Modem_lines lines_;
    Qt_event_loop loop_;
    Port_settings settings_;
    Qt_serial_port port_{loop_};
};

TEST_F(Real_adapter, the_last_characters_leave_before_the_lines_fall_and_the_speed_is_restored) {
    lines_.transmitter.there = true;
    for (const bool tells : {true, false}) {
        lines_.departure_count = 0;
        lines_.transmitter.tells_empty = tells;
        lines_.transmitter.clock_error = tells ? 0.05 : 0.005;
        lines_.transmitter.delay_us = tells ? 40'000 : 15'000;
        ASSERT_TRUE(port_.open(settings_));
        EXPECT_EQ(port_.out_buffer_count(), 0U);
        send(200);
        EXPECT_EQ(departures(), (Departures{{9600, true, 200}})) << tells;
    }
}

TEST_F(Real_adapter, a_driver_that_never_says_empty_does_not_hold_the_end_for_ever) {
    lines_.transmitter.there = true;
    lines_.transmitter.tells_empty = true;
    lines_.transmitter.clock_error = 1000;
    ASSERT_TRUE(port_.open(settings_));
    send(5);
    EXPECT_FALSE(port_.is_open());
}

TEST_F(Real_adapter, a_slow_chip_never_keeps_more_than_a_few_characters) {
    lines_.transmitter.there = true;
    lines_.transmitter.clock_error = 0.005;
    settings_.settings = "115200,N,8,1";
    ASSERT_TRUE(port_.open(settings_));
    send(10'000);
    EXPECT_LE(lines_.transmitter.most_kept, 10);
    EXPECT_EQ(departures(), (Departures{{115200, true, 10'000}}));
}

TEST_F(Real_adapter, a_speed_that_it_does_not_have_is_refused_and_a_near_one_is_reckoned_with) {
    lines_.real_speed = 4800;
    EXPECT_EQ(port_.open(settings_).reason(), speed_trouble(machine_.device(), 9600, 4800));
    EXPECT_FALSE(port_.is_open());
    EXPECT_EQ(lines_.set_by_program, 0);
    lines_.real_speed = 9500;
    ASSERT_TRUE(port_.open(settings_));
    EXPECT_DOUBLE_EQ(port_.characters_per_second(), 950);
}

TEST_F(Real_adapter, is_set_to_the_speed_and_the_frame_of_the_settings) {
    const std::pair<const char*, const char*> cases[] = {
        {"115200,N,8,1", "115200 8N1"}, {"57600,N,8,2", "57600 8N2"}, {"38400,E,8,1", "38400 8E1"},
        {"28800,O,8,1", "28800 8O1"},   {"19200,E,7,2", "19200 7E2"}, {"9600,O,7,1.5", "9600 7O2"},
        {"4800,M,5,1", "4800 5M1"},     {"2400,S,6,1", "2400 6S1"},   {"1200,N,8,1.5", "1200 8N2"},
        {"600,E,8,1.5", "600 8E2"},     {"300,N,7,1", "300 7N1"},     {"110,O,8,2", "110 8O2"}};
    for (const auto& [settings, frame] : cases) {
        settings_.settings = settings;
        settings_.handshake = Handshake(settings_.settings.size() % 4);
        ASSERT_TRUE(port_.open(settings_)) << settings;
        EXPECT_STREQ(lines_.frame.data(), frame);
        port_.close();
    }
}

TEST_F(Real_adapter, the_thread_is_urgent_only_while_the_line_is_open_and_where_that_is_granted) {
    const int before = ::sched_getscheduler(0);
    const auto urgent = [] {
        const Urgent_thread thread;
        return ::sched_getscheduler(0);
    }();
    EXPECT_EQ(::sched_getscheduler(0), before);
    ASSERT_TRUE(port_.open(settings_));
    EXPECT_EQ(::sched_getscheduler(0), urgent);
    port_.close();
    EXPECT_EQ(::sched_getscheduler(0), before);
}

TEST_F(Real_adapter, errors_are_counted_from_opening_to_closing) {
    lines_.framing = 40;
    ASSERT_TRUE(port_.open(settings_));
    EXPECT_EQ(port_.line_errors(), Line_errors());
    lines_.counts = true;
    port_.close();
    ASSERT_TRUE(port_.open(settings_));
    lines_.framing = 42;
    lines_.overrun = 1;
    EXPECT_EQ(port_.line_errors(), (Line_errors{2, 0, 1, 0}));
    lines_.breaks = 3;
    port_.close();
    lines_.breaks = 4;
    EXPECT_EQ(port_.line_errors(), (Line_errors{2, 0, 1, 3}));
}

TEST_F(Real_adapter, the_lines_beside_the_data_are_seen_and_set) {
    EXPECT_EQ(port_.machine_signals(), std::nullopt);
    ASSERT_TRUE(port_.open(settings_));
    lines_.other_signals = TIOCM_DSR | TIOCM_RNG;
    EXPECT_EQ(port_.machine_signals(), (Machine_signals{true, true, false, true}));
    lines_.cts = false;
    lines_.other_signals = TIOCM_CAR;
    EXPECT_EQ(port_.machine_signals(), (Machine_signals{false, false, true, false}));
    port_.set_signal(Own_signal::dtr, false);
    EXPECT_EQ(lines_.set_by_program, TIOCM_RTS);
    port_.set_signal(Own_signal::dtr, true);
    port_.set_signal(Own_signal::rts, false);
    EXPECT_EQ(lines_.set_by_program, TIOCM_DTR);
    port_.close();
    EXPECT_EQ(lines_.set_by_program, 0);
}

TEST_F(Real_adapter, an_observer_sees_both_directions_and_what_is_thrown_away) {
    std::string seen;
    port_.on_crossing = [&](Line_direction direction, std::string_view bytes) {
        seen += direction == Line_direction::to_machine ? '>' : '<';
        seen += bytes;
    };
    settings_.null_discard = true;
    ASSERT_TRUE(port_.open(settings_));
    port_.output("out");
    EXPECT_EQ(machine_.receive(3, testing::in_time), "out");
    machine_.send(std::string("i\0n", 3));
    testing::wait_for(loop_, [&] { return port_.in_buffer_count() >= 2; });
    EXPECT_EQ(seen, std::string(">out<i\0n", 8));
    EXPECT_EQ(port_.input(0), "in");
}

}  // namespace
}  // namespace kelvane
