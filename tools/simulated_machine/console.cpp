#include "simulated_machine/console.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <poll.h>
#include <unistd.h>

#include "simulated_machine/jobs.h"
#include "simulated_machine/reader.h"

namespace kelvane::simulated {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view help =
    "  read [NAME]   ask the PC for a program (it waits for that after File > Send)\n"
    "  punch [NAME]  punch a program to the PC (first choose File > Receive there)\n"
    "  list          programs in the machine's memory\n"
    "  stop          break off what is going on\n"
    "  quit          switch the machine off when it has done what it is at\n"
    "Without a NAME: reading takes it from the program number, punching takes the last program.\n";

std::string name_from_number(std::string_view text) {
    const std::size_t letter = text.find('O');
    std::string name = "PROGRAM";
    if (letter != std::string_view::npos) {
        std::string digits;
        for (std::size_t i = letter + 1; i < text.size() && std::isdigit(text[i]) != 0; ++i) {
            digits += text[i];
        }
        name = digits.empty() ? name : "O" + digits;
    }
    return name + ".NC";
}

bool good_name(const std::string& name) {
    return name.find('/') == std::string::npos && !name.starts_with('.');
}

}  // namespace

Console::Console(const Options& options, Line& line)
    : options_(options), line_(line), contact_(options, line) {
    line_.watch(STDIN_FILENO, [this] { return interrupted(); });
}

Outcome Console::run() {
    std::error_code problem;
    fs::create_directories(options_.serve, problem);
    if (problem) {
        std::cerr << options_.serve << ": " << problem.message() << "\n";
        return Outcome::trouble;
    }
    std::cout << "The machine is on. Orders:\n" << help << std::flush;
    std::optional<Outcome> outcome;
    while (!outcome) {
        outcome = idle();
    }
    return *outcome == Outcome::stopped ? Outcome::done : *outcome;
}

void Console::take_input() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (::poll(&input, 1, 0) > 0) {
        std::array<char, 256> bytes{};
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count <= 0) {
            line_.watch(-1, [this] { return interrupted(); });
            return;
        }
        typed_.append(bytes.data(), static_cast<std::size_t>(count));
    }
    for (std::size_t end = typed_.find('\n'); end != std::string::npos; end = typed_.find('\n')) {
        orders_.push_back(typed_.substr(0, end));
        typed_.erase(0, end + 1);
    }
}

// Asked after every sleep, also in the midst of a job.
bool Console::interrupted() {
    take_input();
    return std::ranges::find(orders_, "stop") != orders_.end();
}

std::optional<Outcome> Console::idle() {
    const std::optional<Outcome> end = line_.wait(orders_.empty() ? never : Clock::now());
    if (end && (*end != Outcome::stopped || end_requested)) {
        return end;
    }
    contact_.update();
    if (!orders_.empty()) {
        const std::string order = orders_.front();
        orders_.pop_front();
        return obey(order);
    }
    if (program_begins()) {
        return read("", false);
    }
    return obey_signals();
}

// Trailers, tails and flow control are not the beginning of a program.
bool Console::program_begins() {
    while (const std::optional<Arrival> arrival = line_.peek()) {
        const bool printable = options_.binary || decode(arrival->byte, options_.code) > ' ';
        if (contact_.begins_at() != never && printable) {
            return true;
        }
        line_.take();
        static_cast<void>(contact_.passes(arrival->byte));
    }
    return false;
}

std::optional<Outcome> Console::obey_signals() {
    if (read_requested.exchange(false)) {
        return read("", true);
    }
    return punch_requested.exchange(false) ? punch("") : std::nullopt;
}

std::optional<Outcome> Console::obey(const std::string& order) {
    const std::size_t blank = order.find(' ');
    const std::string verb = order.substr(0, blank);
    const std::string name = blank == std::string::npos ? "" : order.substr(blank + 1);
    if (verb == "quit") {
        return Outcome::stopped;
    }
    if (!good_name(name)) {
        std::cout << "A name without \"/\", please.\n" << std::flush;
    } else if (verb == "read") {
        return read(name, true);
    } else if (verb == "punch") {
        return punch(name);
    } else if (verb == "list") {
        list();
    } else if (!verb.empty() && verb != "stop") {
        std::cout << help << std::flush;
    }
    return std::nullopt;
}

std::optional<Outcome> Console::read(const std::string& name, bool asks) {
    std::cout << (asks ? "Asking for a program ...\n" : "A program comes in ...\n") << std::flush;
    Reader reader(options_, line_, contact_, asks);
    Report report;
    const Outcome outcome = reader.run(report);
    if (!reader.raw().empty()) {
        const std::string content = reader.content();
        last_program_ = name.empty() ? name_from_number(content) : name;
        const bool saved = write_file(path_of(last_program_), content);
        std::cout << (saved ? "In memory as " : "CANNOT WRITE ") << path_of(last_program_) << "\n"
                  << std::flush;
    }
    static_cast<void>(deliver_report(options_, report.text()));
    return go_on_after(outcome);
}

std::optional<Outcome> Console::punch(const std::string& name) {
    const std::string program = name.empty() ? last_program_ : name;
    if (program.empty() || !fs::is_regular_file(path_of(program))) {
        std::cout << "No such program in memory.\n" << std::flush;
        return std::nullopt;
    }
    std::cout << "Punching " << program << " ...\n" << std::flush;
    const Outcome outcome = punch_job(options_, line_, contact_, {false, path_of(program), ""});
    std::cout << (outcome == Outcome::done ? "Punched.\n" : "Not punched to the end.\n")
              << std::flush;
    line_.withdraw();
    return go_on_after(outcome);
}

// An alarm or a broken-off job leaves the machine on.
std::optional<Outcome> Console::go_on_after(Outcome outcome) {
    const bool line_over = outcome == Outcome::hung_up || outcome == Outcome::timed_out ||
                           (outcome == Outcome::stopped && end_requested);
    return line_over ? std::optional(outcome) : std::nullopt;
}

std::string Console::path_of(const std::string& name) const {
    return (fs::path(options_.serve) / name).string();
}

void Console::list() const {
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(options_.serve, ignored)) {
        std::cout << "  " << entry.path().filename().string() << "\n";
    }
    std::cout << std::flush;
}

}  // namespace kelvane::simulated
