// The longest gap of a send at 9600 baud, as the machine sees it, while nothing else happens and
// while each menu's dialogs are opened, left open and closed in the finished program's windows.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "promise.h"
#include "support/display.h"
#include "support/program_process.h"
#include "support/pty_line.h"

namespace {

using namespace kelvane::testing;
using namespace kelvane::bench;
using namespace std::chrono_literals;

std::string long_program() {
    std::string text = "O1234\r\n";
    while (text.size() < 90'000) {
        text += "G1 X1.125 Y-37.5 F250\r\n";
    }
    return text;
}

/// The machine: takes what comes, and measures how long nothing did.
class Machine {
  public:
    explicit Machine(Pty_line& line) : reader_([this, &line] { read(line); }) {}
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine() {
        ends_ = true;
        reader_.join();
    }
    /// In milliseconds, since the last call.
    double longest_gap() {
        return std::chrono::duration<double, std::milli>(gap_.exchange(0s)).count();
    }

  private:
    using Clock = std::chrono::steady_clock;
    void read(Pty_line& line) {
        Clock::time_point last = Clock::now();
        while (!ends_) {
            if (line.receive(1, 20ms).empty()) {
                continue;
            }
            const Clock::time_point now = Clock::now();
            gap_ = std::max<Clock::duration>(gap_, now - last);
            last = now;
        }
    }

    std::atomic<bool> ends_ = false;
    std::atomic<Clock::duration> gap_ = Clock::duration(0);
    std::thread reader_;
};

bool gap_beside_dialogs(const Display& display, Machine& machine) {
    constexpr double most = 50;  // milliseconds
    bool kept = true;
    for (const auto& dialog : menu_dialogs) {
        display.pick(dialog.menu, dialog.item);
        const bool came = display.shows(dialog.title);
        std::this_thread::sleep_for(2s);
        display.type(dialog.title, "Escape");
        kept = came && display.closes(dialog.title) && kept;
        kept = promise(std::string("longest gap beside \"") + dialog.title + "\", ms",
                       machine.longest_gap(), Limit::at_most, most) &&
               kept;
    }
    return kept;
}

}  // namespace

int main() {
    const Program_directory folder;
    const Display display(folder);
    Pty_line line;
    folder.connect(line.device(), {{2, "BAUD 3"}});
    folder.put("PART.NC", long_program());
    const auto program =
        folder.start(Program_directory::job(1, folder.path("PART.NC")), display.environment());
    if (!wait_until([&] { return folder.exists("scratchpad data 5"); }, 30s) ||
        !display.shows("Kelvane Lite")) {
        std::cout << "The program does not start." << std::endl;
        return 1;
    }
    Machine machine(line);
    line.send("\x11");
    std::this_thread::sleep_for(1s);
    machine.longest_gap();
    std::this_thread::sleep_for(5s);
    std::cout << "          longest gap undisturbed, ms: " << machine.longest_gap() << std::endl;
    return gap_beside_dialogs(display, machine) ? 0 : 1;
}
