// How long a great program takes to renumber, against awk scripts that only renumber, in one run on
// the same file; what it costs in memory; and whether many GOTO targets make a line dearer.
// Ends with status 1 when a promise is broken.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <utility>

#include "beside.h"
#include "promise.h"
#include "resequence/engine.h"

namespace {

using namespace kelvane::bench;

constexpr int rounds = 5;

/// Blocks of some 30 characters; every thousandth jumps to one of `targets` blocks.
std::string program(int lines, int targets) {
    std::string text;
    for (int line = 1; line <= lines; ++line) {
        const std::string number = std::to_string(line);
        text.append("N").append(number).append(" G1 X").append(number).append(".125 Y-3.21 F250");
        if (targets > 0 && line % 1000 == 0) {
            text += " GOTO" + std::to_string(line / 1000 % targets * 997 + 1);
        }
        text += "\r\n";
    }
    return text;
}

std::string read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text(std::filesystem::file_size(path), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    return text;
}

void write(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::string renumbered(const std::string& text, bool gotos) {
    kelvane::Resequence_options options;
    options.add_space = true;
    options.gotos = gotos;
    auto result = kelvane::resequence(text, options);
    auto* done = std::get_if<kelvane::Resequenced>(&result);
    return done == nullptr ? std::string() : std::move(done->text);
}

/// Most memory this process has used so far, in bytes.
double peak_memory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

struct Script {
    const char* name;
    const char* awk;
    const char* text;
};

/// They do less than the program: the second only takes each line's first word for its number.
constexpr Script scripts[] = {
    {"mawk, numbers removed", "mawk", R"({ sub(/^N[0-9. ]*/, ""); print "N" (n += 10) " " $0 })"},
    {"mawk, first words replaced", "mawk", R"({ print "N" (n += 10) substr($0, index($0, " ")) })"},
    {"gawk, numbers removed", "gawk", R"({ sub(/^N[0-9. ]*/, ""); print "N" (n += 10) " " $0 })"},
};

bool faster_than(const Script& script, const std::string& folder, int lines, Seconds own) {
    if (!command(std::string("command -v ") + script.awk + " >/dev/null 2>&1")) {
        std::cout << "  " << script.awk << " is not installed\n";
        return true;
    }
    const std::string run =
        "cd '" + folder + "' && LC_ALL=C " + script.awk + " '" + script.text + "' program > by_awk";
    bool same = true;
    const Seconds other = usual_time(rounds, [&] { same = command(run) && same; });
    same = same && read(folder + "/by_awk") == read(folder + "/renumbered");
    beside("resequencing of " + std::to_string(lines) + " lines, s", own, script.name, other);
    std::cout << (same ? "" : "  DIFFERENT RESULTS\n");
    return promise("times as fast", other / own, Limit::at_least, 1) && same;
}

bool beside_scripts(const std::string& folder, int lines) {
    const double base = peak_memory();
    write(folder + "/program", program(lines, 0));
    const auto size = static_cast<double>(std::filesystem::file_size(folder + "/program"));
    const Seconds own = usual_time(rounds, [&folder] {
        write(folder + "/renumbered", renumbered(read(folder + "/program"), true));
    });
    bool kept = promise("memory, files' sizes", (peak_memory() - base) / size, Limit::at_most, 4);
    for (const Script& script : scripts) {
        kept = faster_than(script, folder, lines, own) && kept;
    }
    return kept;
}

bool with_gotos(int lines) {
    const std::string one = program(lines, 1);
    const std::string many = program(lines, 1000);
    const Seconds with_one = usual_time(rounds, [&one] { renumbered(one, true); });
    const Seconds with_many = usual_time(rounds, [&many] { renumbered(many, true); });
    std::cout << "1000 GOTOs: to one target " << with_one << " s, to 1000 " << with_many << " s\n";
    return promise("times the cost of one target", with_many / with_one, Limit::at_most, 1.5);
}

bool measure(const std::string& folder) {
    bool kept = true;
    for (const int lines : {10'000, 100'000, 1'000'000}) {
        kept = beside_scripts(folder, lines) && kept;
    }
    return with_gotos(1'000'000) && kept;
}

}  // namespace

int main() {
    std::string folder = (std::filesystem::temp_directory_path() / "kelvane_bench_XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) {
        std::cerr << "no temporary folder\n";
        return 1;
    }
    const bool kept = measure(folder);
    std::filesystem::remove_all(folder);
    return kept ? 0 : 1;
}
