// How well a send uses the line, how soon it obeys Xoff and what it costs, of the finished program
// on the simulated machine, whose line takes a character's time for every character.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <sstream>
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "bare_sender.h"
#include "beside.h"
#include "promise.h"
#include "support/program_process.h"
#include "support/pty_line.h"

namespace {

using namespace std::chrono_literals;
using namespace kelvane::bench;
using namespace kelvane::testing;

constexpr auto patience = 120s;
/// Every figure is measured so often; the one in the middle counts.
constexpr int rounds = 3;
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
        const std::vector<double> list = reported_list(key);
        return list.empty() ? -1 : list.front();
    }
    /// The figures behind a key, in their order.
    [[nodiscard]] std::vector<double> reported_list(const std::string& key) const {
        const std::string report = "\n" + folder.content("report");
        const std::size_t at = report.find("\n" + key + "=");
        std::vector<double> list;
        if (at != std::string::npos) {
            const std::size_t begin = at + key.size() + 2;
            std::istringstream line(report.substr(begin, report.find('\n', begin) - begin));
            for (std::string figure; std::getline(line, figure, ',');) {
                list.push_back(std::stod(figure));
            }
        }
        return list;
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

/// The value in the middle.
double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Keeps every processor occupied by threads of a process that is not the program.
class Occupied_processors {
  public:
    Occupied_processors() {
        for (unsigned i = 0; i < std::thread::hardware_concurrency(); ++i) {
            threads_.emplace_back([](const std::stop_token& stop) {
                while (!stop.stop_requested()) {
                }
            });
        }
    }

  private:
    std::vector<std::jthread> threads_;
};

const std::vector<std::string> roomy{"--buffer", "100000000"};

/// Use of the line in percent by a sender that does nothing else.
double bare_use_at(const Baud_row& row, const std::string& text) {
    Run run(row, roomy);
    const Bare_sender sender(run.folder.path("line"), text, row.baud / 10);
    return run.satisfied() ? run.reported("line_use_percent") : 0;
}

bool send_at(const Baud_row& row, const char* load, double use_goal, double processor_goal) {
    const std::string text = program_of(static_cast<std::size_t>(row.baud) * 8 / 10);
    std::vector<double> uses;
    std::vector<double> bare_uses;
    std::vector<double> shares;
    bool sent = true;
    for (int round = 0; round < rounds; ++round) {
        Run run(row, roomy);
        run.folder.put("PART.NC", text);
        const auto program = run.start(1, "PART.NC");
        shares.push_back(processor_share(*program, 5s));
        sent = program->exit_within(patience) == 0 && run.satisfied() && sent &&
               run.reported("bytes") == static_cast<double>(text.size());
        uses.push_back(run.reported("line_use_percent"));
        bare_uses.push_back(bare_use_at(row, text));
    }
    const std::string where = " at " + std::to_string(row.baud) + " baud, " + load + ", %";
    beside("use of the line" + where, median(uses), "bare sender", median(bare_uses),
           Better::greater);
    const bool used = promise("use of the line" + where, median(uses), Limit::at_least, use_goal);
    return promise("processor while sending" + where, median(shares), Limit::at_most,
                   processor_goal) &&
           used && sent;
}

bool send_on_an_idle_computer() {
    const bool slow = send_at({9600, "BAUD 3"}, "idle", 98.5, 8);
    return send_at({115200, "BAUD-2"}, "idle", 97, 30) && slow;
}

bool send_on_a_busy_computer() {
    const Occupied_processors busy;
    const bool slow = send_at({9600, "BAUD 3"}, "busy", 98.5, 30);
    return send_at({115200, "BAUD-2"}, "busy", 97, 30) && slow;
}

/// Characters after the Xoffs of one send: what nine of ten do not exceed, and the most.
struct Obedience {
    double nine_of_ten = 0;
    double most = 0;
    bool sent = false;
};

Obedience obeyed(Run& run, bool program_ended) {
    const bool satisfied = run.satisfied();
    std::vector<double> after = run.reported_list("after_xoff");
    if (after.size() < 2) {
        return {};
    }
    std::ranges::sort(after);
    return {after[after.size() * 9 / 10], after.back(), program_ended && satisfied};
}

Obedience obeyed_by_program(const Baud_row& row, const std::vector<std::string>& machine,
                            const std::string& text) {
    Run run(row, machine);
    run.folder.put("PART.NC", text);
    const auto program = run.start(1, "PART.NC");
    const bool ended = program->exit_within(patience) == 0;
    return obeyed(run, ended);
}

Obedience obeyed_by_bare_sender(const Baud_row& row, const std::vector<std::string>& machine,
                                const std::string& text) {
    Run run(row, machine);
    const Bare_sender sender(run.folder.path("line"), text, row.baud / 10);
    return obeyed(run, true);
}

// The machine works off less than comes in, so it must hold the line again and again. It looks at
// the line without sleeping: a processor of a virtual computer takes a millisecond to wake, the
// first characters after each pause would be seen late, and the machine's line would stay behind
// the program's by that much.
bool obey_xoff_at(const Baud_row& row) {
    const int characters_per_second = row.baud / 10;
    const std::vector<std::string> machine{
        "--buffer",      "100000", "--high-water", "100",
        "--low-water",   "20",     "--drain",      std::to_string(characters_per_second / 2),
        "--alarm-after", "100000", "--attentive"};
    const std::string text =
        program_of(static_cast<std::size_t>(std::clamp(characters_per_second * 4, 700, 2500)));
    std::vector<double> ours;
    std::vector<double> bare;
    std::vector<double> ours_most;
    std::vector<double> bare_most;
    bool sent = true;
    for (int round = 0; round < rounds; ++round) {
        const Obedience by_program = obeyed_by_program(row, machine, text);
        const Obedience by_bare = obeyed_by_bare_sender(row, machine, text);
        ours.push_back(by_program.nine_of_ten);
        ours_most.push_back(by_program.most);
        bare.push_back(by_bare.nine_of_ten);
        bare_most.push_back(by_bare.most);
        sent = sent && by_program.sent && by_bare.sent;
    }
    constexpr double by_construction = Bare_sender::ahead + Bare_sender::chunk;
    const std::string where = "characters after an Xoff at " + std::to_string(row.baud) + " baud";
    beside(where + ", nine of ten", median(ours), "bare sender", median(bare));
    beside(where + ", the most", median(ours_most), "bare sender", median(bare_most));
    return promise(where + ", nine of ten", median(ours), Limit::at_most,
                   std::max(by_construction, median(bare))) &&
           sent;
}

bool obey_xoff() {
    return std::ranges::count_if(baud_rates, obey_xoff_at) == std::ssize(baud_rates);
}

/// How often the process has slept and been woken.
double times_woken(const Process& program) {
    std::ifstream file("/proc/" + std::to_string(program.id()) + "/status");
    const std::string key = "voluntary_ctxt_switches:";
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(key)) {
            return std::stod(line.substr(key.size()));
        }
    }
    return 0;
}

bool wait_at_rest(const char* what, int event) {
    Pty_line line;
    Program_directory folder;
    folder.connect(line.device());
    folder.put("PART.NC", program_of(1000));
    const auto program =
        folder.start(Program_directory::job(event, folder.path(event == 1 ? "PART.NC" : "BACK")));
    static_cast<void>(wait_until([&] { return folder.exists(staging); }, patience));
    const std::string waiting = std::string(" while waiting for ") + what;
    std::this_thread::sleep_for(2s);  // to the end of its start
    const double before = times_woken(*program);
    const double share = processor_share(*program, 9s);
    const double woken = (times_woken(*program) - before) / 10;
    program->signal(SIGTERM);
    const bool calm = promise("wake-ups a second" + waiting, woken, Limit::at_most, 10);
    return promise("processor" + waiting + ", %", share, Limit::at_most, 1) && calm &&
           program->exit_within(patience) == 0;
}

bool wait_calmly() {
    const bool for_xon = wait_at_rest("Xon", 1);
    return wait_at_rest("data", 2) && for_xon;
}

/// What can be measured, by its name on the command line.
struct Figure {
    std::string_view name;
    std::function<bool()> keeps_promise;
};

const Figure figures[] = {
    {"use", [] { return send_on_an_idle_computer(); }},
    {"busy", [] { return send_on_a_busy_computer(); }},
    {"wait", [] { return wait_calmly(); }},
    {"xoff", [] { return obey_xoff(); }},
};

}  // namespace

/// `transfer_bench [NAME]`: all figures, or those of one name.
int main(int count, char** arguments) {
    const std::string_view wanted = count > 1 ? arguments[1] : "";
    bool kept = true;
    bool known = false;
    for (const Figure& figure : figures) {
        if (wanted.empty() || wanted == figure.name) {
            known = true;
            kept = figure.keeps_promise() && kept;
        }
    }
    return kept && known ? 0 : 1;
}
