// A send that goes on beside open dialogs, in the finished program's real windows: a display
// without a screen, keys and a mouse from outside, and a line whose other end the test holds.

#include <algorithm>
#include <cctype>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>

#include "support/program_process.h"
#include "support/pty_line.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;

constexpr auto in_time = 30s;   // for what comes at once on a quiet computer
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
        const std::string number = folder.path("display");
        display = std::make_unique<Process>(
            std::vector<std::string>{"/usr/bin/Xvfb", "-displayfd", "1", "-screen", "0",
                                     "1280x1024x24", "-nolisten", "tcp"},
            std::vector<std::string>{}, number);
        ASSERT_TRUE(wait_until([&] { return !display_name().empty(); }, in_time));
        folder.connect(line.device(), {{2, "BAUD 3"}});
        folder.put("PART.NC", long_program());
        program = folder.start(Program_directory::job(1, folder.path("PART.NC")),
                               {"QT_QPA_PLATFORM=xcb", "DISPLAY=" + display_name()});
        ASSERT_TRUE(wait_until([&] { return folder.exists("scratchpad data 5"); }, in_time));
        ASSERT_TRUE(shows("Kelvane Lite"));
        line.send("\x11");
    }

    /// As the server has told it on a line of its own.
    [[nodiscard]] std::string display_name() const {
        std::istringstream told(folder.content("display"));
        for (std::string row; std::getline(told, row) && !told.eof();) {
            if (!row.empty() &&
                std::ranges::all_of(row, [](unsigned char c) { return std::isdigit(c) != 0; })) {
                return ":" + row;
            }
        }
        return {};
    }
    [[nodiscard]] bool desk(const std::string& command) const {
        const std::string all = "DISPLAY=" + display_name() + " xdotool " + command;
        return std::system((all + " >/dev/null 2>&1").c_str()) == 0;
    }
    [[nodiscard]] bool is_shown(const std::string& title) const {
        return desk("search --onlyvisible --name '^" + title + "$'");
    }
    [[nodiscard]] bool shows(const std::string& title) const {
        return wait_until([&] { return is_shown(title); }, in_time);
    }
    /// Keys in a window, which nobody else gives the focus to: there is no window manager.
    void type(const std::string& title, const std::string& keys) const {
        EXPECT_TRUE(desk("search --onlyvisible --name '^" + title + "$' windowfocus"));
        EXPECT_TRUE(desk("key --delay 50 " + keys));
    }
    /// The n-th item of a menu.
    void pick(const std::string& menu, int item) const {
        std::string keys = "alt+" + menu;
        for (int down = 0; down < item; ++down) {
            keys += " Down";
        }
        type("Kelvane Lite", keys + " Return");
    }
    /// A button of the main window's last row, by its place in hundredths of the width; the window
    /// stands in the display's corner, 900 by 640, where no window manager puts it elsewhere.
    void press_button(int place) const {
        EXPECT_TRUE(desk("mousemove " + std::to_string(9 * place) + " 602 click 1"));
    }
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
    Pty_line line;
    std::string text;
    std::unique_ptr<Process> display;
    std::unique_ptr<Process> program;
};

TEST_F(Beside_dialogs, a_send_goes_on_and_stop_and_send_work) {
    constexpr int send_button = 86;
    constexpr int stop_button = 95;
    const struct {
        const char* menu;
        int item;
        const char* title;
    } dialogs[] = {
        {"f", 0, "Open"},
        {"c", 0, "Configure serial port"},
        {"c", 1, "Select I/O device"},
        {"c", 2, "Select printer"},
        {"c", 3, "Page layout"},
        {"c", 4, "Files and directories"},
        {"a", 1, "Getting started"},
    };
    expect_it_goes_on();
    for (const auto& dialog : dialogs) {
        SCOPED_TRACE(dialog.title);
        pick(dialog.menu, dialog.item);
        ASSERT_TRUE(shows(dialog.title));
        expect_it_goes_on();
        press_button(stop_button);
        expect_it_pauses();
        press_button(send_button);
        expect_it_goes_on();
        EXPECT_TRUE(is_shown(dialog.title));
        type(dialog.title, "Escape");
        ASSERT_TRUE(wait_until([&] { return !is_shown(dialog.title); }, in_time));
        expect_it_goes_on();
    }
    EXPECT_EQ(text, long_program().substr(0, text.size())) << "nothing is lost, nothing doubled";
    program->signal(SIGTERM);
    EXPECT_EQ(program->exit_within(in_time), 1);
}

}  // namespace
}  // namespace kelvane::testing
