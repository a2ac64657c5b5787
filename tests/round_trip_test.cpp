// Whatever is sent in any tape code comes back from the machine as it was, as far as the code has
// the characters. Programs are random with a fixed seed.

#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string_view>

#include "desktop/qt_event_loop.h"
#include "desktop/qt_serial_port.h"
#include "qt_test_application.h"
#include "support/plain_settings.h"
#include "support/pty_line.h"
#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;

struct Tape_code_row {
    const char* setting;
    std::string_view carries;
};

constexpr std::string_view ascii =
    " !\"#$%&'()*+,-./"
    "0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~"
    "\t";
// ":" shares its code with "O", "]" with "{"; "(" is 26, which every receive throws away.
constexpr std::string_view eia = " $%&)+,-./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ[{}";

constexpr Tape_code_row tape_codes_sent[] = {
    {" 0", ascii}, {" 1", ascii}, {" 2", ascii}, {" 3", eia}};
constexpr const char* ends_of_block[] = {" 0", " 1", " 2", " 3", "4LFCRCR", "4LFNULNUL"};

class Random_programs {
  public:
    /// Lines ended by CR LF; some are empty.
    std::string program(std::string_view characters) {
        std::string text;
        for (std::size_t lines = number(1, 12); lines > 0; --lines) {
            for (std::size_t length = number(0, 3) == 0 ? 0 : number(1, 40); length > 0; --length) {
                text += characters[number(0, characters.size() - 1)];
            }
            text += "\r\n";
        }
        return text;
    }
    std::size_t number(std::size_t least, std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(least, most)(engine_);
    }

  private:
    std::mt19937 engine_{20240229};
};

std::string with_line_feeds_only(std::string text) {
    std::erase(text, '\r');
    return text;
}

/// Runs `round` with every tape code, end of block, and with and without code recognition.
template <typename Round>
void for_every_setting(Round round) {
    for (const Tape_code_row& code : tape_codes_sent) {
        for (const char* end_of_block : ends_of_block) {
            for (const char* recognition : {"YES", "NO"}) {
                SCOPED_TRACE(std::string("code") + code.setting + ", end of block " + end_of_block +
                             ", recognition " + recognition);
                round(code, end_of_block, recognition);
            }
        }
    }
}

TEST(Round_trip, brings_every_program_back_in_virtual_time) {
    Random_programs random;
    for_every_setting([&](const auto& code, const char* end_of_block, const char* recognition) {
        for (const bool line_feeds_only : {false, true, false}) {
            const std::string text = random.program(code.carries);
            Shop_floor shop;
            shop.machine_file("Mill", {{4, code.setting}, {6, end_of_block}, {13, recognition}});
            shop.program("OUT.NC", line_feeds_only ? with_line_feeds_only(text) : text);
            shop.send("OUT.NC");
            shop.receive_from_machine("BACK.NC", std::string(shop.received()));
            EXPECT_EQ(shop.file("BACK.NC"), text);
            EXPECT_TRUE(shop.idle());
        }
    });
}

/// The program on doubles, but for its serial port and its clock; the machine keeps the tape that
/// it has read.
class Real_line {
  public:
    explicit Real_line(const Setting_lines& settings) {
        files_.put("/kelvane/Editor COM port settings", plain_settings(settings));
        files_.put("/kelvane/Serial port devices", "COM1=" + line_.device());
        program_.start();
        machine_asks_.on_tick = [this] {
            if (program_.window.control.state() == Transfer_state::waiting_for_start) {
                machine_asks_.set_enabled(false);
                line_.send(xon);
            }
        };
    }

    std::string there_and_back(const std::string& text) {
        files_.put("/nc/OUT.NC", text);
        machine_asks_.set_enabled(true);
        menu(0, "/nc/OUT.NC");
        tape_ = line_.receive(100'000, 5ms);
        menu(1, "/nc/BACK.NC");
        program_.window.control.Timer6.set_interval(60);
        line_.send(tape_);
        run_until([this] { return program_.window.tasks.empty(); });
        return files_.content("/nc/BACK.NC");
    }
    [[nodiscard]] const std::string& tape() const { return tape_; }

  private:
    void menu(std::size_t item, const std::string& path) {
        file_dialog_.answers.push_back({item == 1 ? File_purpose::save : File_purpose::open, path});
        program_.window.FileMenuItem[item].click();
        run_until([this] {
            return program_.window.tasks.empty() ||
                   program_.window.control.state() == Transfer_state::waiting_for_data;
        });
    }
    void run_until(const std::function<bool()>& condition) { wait_for(loop_, condition); }

    Pty_line line_;
    std::string tape_;
    Qt_event_loop loop_;
    Virtual_loop no_windows_;
    Recorded_windows windows_{no_windows_};
    Scripted_message_box boxes_;
    Scripted_file_dialog file_dialog_{loop_};
    Recording_printer printer_;
    Recorded_desktop desktop_;
    Memory_files files_;
    Qt_serial_port port_{loop_};
    Platform platform_{loop_, windows_, boxes_, file_dialog_, printer_, port_, desktop_, files_};
    Program program_{platform_};
    Timer machine_asks_{loop_, 2};
};

TEST(Round_trip, brings_every_program_back_over_a_real_line) {
    Random_programs random;
    for_every_setting([&](const auto& code, const char* end_of_block, const char* recognition) {
        const std::string handshake = " " + std::to_string(random.number(0, 3));
        SCOPED_TRACE("handshake" + handshake);
        Real_line shop({{2, "BAUD-2"},
                        {4, code.setting},
                        {5, handshake},
                        {6, end_of_block},
                        {13, recognition}});
        const std::string text = random.program(code.carries);
        EXPECT_EQ(shop.there_and_back(text), text);
        EXPECT_GE(shop.tape().size(), with_line_feeds_only(text).size());
    });
}

}  // namespace
}  // namespace kelvane::testing
