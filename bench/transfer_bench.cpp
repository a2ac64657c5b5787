// How well a send uses the line, how soon it obeys Xoff and what it costs, of the finished program
// on the simulated machine, whose line takes a character's time for every character.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <iostream>
#include <memory>
#include <sched.h>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "promise.h"
#include "support/program_process.h"
#include "support/pty_line.h"

namespace {

using namespace std::chrono_literals;
using namespace kelvane::bench;
using namespace kelvane::testing;

constexpr auto patience = 120s;
/// A run that misses its figure may have been disturbed; it is repeated, and the best one counts.
constexpr int rounds = 4;
constexpr const char* staging = "scratchpad data 5";
constexpr const char* plain_line = "N1234 G1 X123.456 Y-78.901 F2500\r\n";

struct Baud_row {
    int baud;
    const char* setting;
};

/// The tenth of it is the line's characters a second.
constexpr Baud_row baud_rates[] = {{1200, "BAUD 6"},  {2400, "BAUD 5"},  {4800, "BAUD 4"},
                                   {9600, "BAUD 3"},  {19200, "BAUD 2"}, {38400, "BAUD 0"},
                                   {57600, "BAUD-1"}, {115200, "BAUD-2"}};

std::string program_of(std::size_t size) {
    std::string text;
    while (text.size() < size) {
        text += plain_line;
    }
    return text + "%\r\n";
}

/// A program directory with the simulated machine on its COM1, and one job.
class Run {
  public:
    Run(const Baud_row& row, std::vector<std::string> machine_options) {
        const std::string link = folder.path("line");
        std::vector<std::string> command{SIMULATED_MACHINE,
                                         "--link",
                                         link,
                                         "--code",
                                         "none",
                                         "--baud",
                                         std::to_string(row.baud),
                                         "--report",
                                         folder.path("report"),
                                         "--timeout",
                                         "300",
                                         "--idle-ms",
                                         "1500"};
        command.insert(command.end(), machine_options.begin(), machine_options.end());
        command.insert(command.end(), {"--read", folder.path("memory")});
        machine_ = std::make_unique<Process>(command, std::vector<std::string>{},
                                             folder.path("machine log"));
        static_cast<void>(wait_until([&] { return folder.exists("line"); }, patience));
        folder.connect(link, {{2, row.setting}});
    }
    std::unique_ptr<Process> start(int event, const std::string& file) {
        auto program = folder.start(Program_directory::job(event, folder.path(file)));
        static_cast<void>(wait_until([&] { return folder.exists(staging); }, patience));
        return program;
    }
    bool satisfied() {
        const bool done = machine_->exit_within(patience) == 0;
        if (!done) {
            std::cout << "  the machine complains: " << folder.content("machine log") << "\n";
        }
        return done;
    }
    [[nodiscard]] double reported(const std::string& key) const {
        const std::string report = "\n" + folder.content("report");
        const std::size_t at = report.find("\n" + key + "=");
        return at == std::string::npos ? -1 : std::stod(report.substr(at + key.size() + 2));
    }

    Program_directory folder;

  private:
    std::unique_ptr<Process> machine_;
};

/// Share of a core in percent that a program takes in the next `span`, after a second to settle.
double processor_share(Process& program, std::chrono::milliseconds span) {
    std::this_thread::sleep_for(1s);
    const auto before = program.processor_time();
    std::this_thread::sleep_for(span);
    const std::chrono::duration<double> spent = program.processor_time() - before;
    return 100 * spent / std::chrono::duration<double>(span);
}

bool send_at(const Baud_row& row, double use_goal, double processor_goal) {
    const std::string text = program_of(static_cast<std::size_t>(row.baud) * 8 / 10);
    double use = 0;
    double share = 100;
    bool sent = true;
    for (int round = 0; round < rounds && (use < use_goal || share > processor_goal); ++round) {
        Run run(row, {"--buffer", "100000000"});
        run.folder.put("PART.NC", text);
        const auto program = run.start(1, "PART.NC");
        share = std::min(share, processor_share(*program, 5s));
        sent = program->exit_within(patience) == 0 && run.satisfied() && sent &&
               run.reported("bytes") == static_cast<double>(text.size());
        use = std::max(use, run.reported("line_use_percent"));
    }
    const std::string baud = " at " + std::to_string(row.baud) + " baud, %";
    const bool used = promise("use of the line" + baud, use, Limit::at_least, use_goal);
    return promise("processor while sending" + baud, share, Limit::at_most, processor_goal) &&
           used && sent;
}

/// Keeps every processor from falling asleep by threads that run when nothing else does. A
/// processor of a virtual computer takes a millisecond to wake, so the machine would see the first
/// characters after each pause late, and its line would stay behind the program's by that much.
class Awake_processors {
  public:
    Awake_processors() {
        for (unsigned i = 0; i < std::thread::hardware_concurrency(); ++i) {
            threads_.emplace_back([](const std::stop_token& stop) {
                const sched_param none{};
                const bool modest = ::sched_setscheduler(0, SCHED_IDLE, &none) == 0;
                while (modest && !stop.stop_requested()) {
                }
            });
        }
    }

  private:
    std::vector<std::jthread> threads_;
};

// The machine works off less than comes in, so it must hold the line again and again.
bool obey_xoff_at(const Baud_row& row) {
    constexpr double two_and_a_chunk = 7;
    const Awake_processors awake;
    const int characters_per_second = row.baud / 10;
    double most = 1e9;
    bool sent = true;
    for (int round = 0; round < rounds && most > two_and_a_chunk; ++round) {
        Run run(row, {"--buffer", "100000", "--high-water", "100", "--low-water", "20", "--drain",
                      std::to_string(characters_per_second / 2), "--alarm-after", "100000"});
        run.folder.put(
            "PART.NC",
            program_of(static_cast<std::size_t>(std::clamp(characters_per_second * 4, 700, 2500))));
        sent = run.start(1, "PART.NC")->exit_within(patience) == 0 && run.satisfied() && sent &&
               run.reported("xoffs") > 1;
        most = std::min(most, run.reported("after_xoff_max"));
    }
    return promise("most characters after an Xoff at " + std::to_string(row.baud) + " baud", most,
                   Limit::at_most, two_and_a_chunk) &&
           sent;
}

bool wait_at_rest(const char* what, int event) {
    Pty_line line;
    Program_directory folder;
    folder.connect(line.device());
    folder.put("PART.NC", program_of(1000));
    const auto program =
        folder.start(Program_directory::job(event, folder.path(event == 1 ? "PART.NC" : "BACK")));
    static_cast<void>(wait_until([&] { return folder.exists(staging); }, patience));
    const double share = processor_share(*program, 8s);
    program->signal(SIGTERM);
    return promise(std::string("processor while waiting for ") + what + ", %", share,
                   Limit::at_most, 1) &&
           program->exit_within(patience) == 0;
}

}  // namespace

int main() {
    bool kept = send_at({9600, "BAUD 3"}, 98.5, 8);
    kept = send_at({115200, "BAUD-2"}, 97, 30) && kept;
    kept = wait_at_rest("Xon", 1) && kept;
    kept = wait_at_rest("data", 2) && kept;
    for (const Baud_row& row : baud_rates) {
        kept = obey_xoff_at(row) && kept;
    }
    return kept ? 0 : 1;
}
