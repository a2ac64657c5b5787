#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "simulated_machine/console.h"
#include "simulated_machine/jobs.h"
#include "simulated_machine/line.h"
#include "simulated_machine/options.h"
#include "simulated_machine/pseudo_terminal.h"

namespace {

using namespace kelvane::simulated;

Outcome run_machine(const Options& options) {
    catch_signals(!options.serve.empty());
    if (!options.report.empty()) {
        std::error_code ignored;
        std::filesystem::remove(options.report, ignored);
    }
    Pseudo_terminal terminal;
    if (!terminal.open(options.link)) {
        std::cerr << terminal.problem() << "\n";
        return Outcome::trouble;
    }
    std::cout << terminal.partner_path() << std::endl;
    if (!options.full_speed && !options.attentive) {
        run_punctually();
    }
    const Time deadline = options.timeout.count() > 0 ? Clock::now() + options.timeout : never;
    Line line(terminal, {options.baud, options.stop_bits, options.full_speed, options.hang_up_after,
                         options.attentive, deadline});
    return options.serve.empty() ? run_jobs(options, line) : Console(options, line).run();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const Parsed parsed = parse_options(std::vector<std::string>(argv + 1, argv + argc));
        if (!parsed.options) {
            (parsed.help ? std::cout : std::cerr) << parsed.message;
            return static_cast<int>(parsed.help ? Outcome::done : Outcome::usage);
        }
        return static_cast<int>(run_machine(*parsed.options));
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << "\n";
        return static_cast<int>(Outcome::trouble);
    }
}
