// A send that goes on beside open dialogs, in the finished program's real windows: a display
// without a screen, keys and a mouse from outside, and a line whose other end the test holds.

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "support/display.h"
#include "support/program_process.h"
#include "support/pty_line.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;

constexpr auto quiet = 400ms;   // silence that tells that nothing more comes
constexpr int some_time = 300;  // characters: a third of a second at 9600 baud

// Of some 90 s at 9600 baud.
std::string long_program() {
    std::string text = "O1234\r\n";
    for (int block = 10; text.size() < 90'000; block += 10) {
        text += "N" + std::to_string(block) + " G1 X1.125 Y-37.5 F250\r\n";
    }
    return text;
}

class Beside_dialogs : public ::testing::Test {
  protected:
    void SetUp() override {
        folder.connect(line.device(), {{2, "BAUD 3"}});
        folder.put("PART.NC", long_program());
        program = folder.start(Program_directory::job(1, folder.path("PART.NC")), environment());
        ASSERT_TRUE(wait_until([&] { return folder.exists("scratchpad data 5"); }, in_time));
        ASSERT_TRUE(display.shows("Kelvane Lite"));
        line.send("\x11");
    }

    [[nodiscard]] std::vector<std::string> environment() const {
        std::vector<std::string> all = display.environment();
        for (const std::string& variable : patient_environment()) {
            all.push_back(variable);
        }
        return all;
    }
    /// A button of the main window's last row, by its place in hundredths of the width; the window
    /// stands in the display's corner, 900 by 640, where no window manager puts it elsewhere.
    void press_button(int place) const { EXPECT_TRUE(display.click(9 * place, 602)); }
    /// Characters that leave from now on.
    void expect_it_goes_on() {
        text += line.receive(long_program().size(), 0ms);
        const std::string more = line.receive(some_time, in_time);
        EXPECT_EQ(more.size(), std::size_t{some_time});
        text += more;
    }
    void expect_it_pauses() {
        const std::string late = line.receive(long_program().size(), quiet);
        text += late;
        EXPECT_LT(text.size(), long_program().size());
        EXPECT_EQ(line.receive(1, quiet), "");
    }

    Program_directory folder;
    Display display{folder};
    Pty_line line;
    std::string text;
    std::unique_ptr<Process> program;
};

TEST_F(Beside_dialogs, a_send_goes_on_and_stop_and_send_work) {
    constexpr int send_button = 86;
    constexpr int stop_button = 95;
    expect_it_goes_on();
    for (const auto& dialog : menu_dialogs) {
        SCOPED_TRACE(dialog.title);
        EXPECT_TRUE(display.pick(dialog.menu, dialog.item));
        ASSERT_TRUE(display.shows(dialog.title) && display.put_aside(dialog.title));
        expect_it_goes_on();
        press_button(stop_button);
        expect_it_pauses();
        press_button(send_button);
        expect_it_goes_on();
        EXPECT_TRUE(display.is_shown(dialog.title));
        EXPECT_TRUE(display.type(dialog.title, "Escape"));
        ASSERT_TRUE(display.closes(dialog.title));
        expect_it_goes_on();
    }
    EXPECT_EQ(text, long_program().substr(0, text.size())) << "nothing is lost, nothing doubled";
    program->signal(SIGTERM);
    EXPECT_EQ(program->exit_within(in_time), 1);
}

}  // namespace
}  // namespace kelvane::testing
