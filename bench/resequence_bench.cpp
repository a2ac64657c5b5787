// How long a great program takes to renumber, against awk scripts that only renumber, in one run on
// the same file; what it costs in memory; and whether many GOTO targets make a line dearer.
// Ends with status 1 when a promise is broken.

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <utility>

#include "promise.h"
#include "resequence/engine.h"

namespace {

using namespace kelvane::bench;
using Seconds = double;

constexpr int line_count = 1'000'000;
constexpr int rounds = 3;

/// Blocks of some 30 characters; every thousandth jumps to one of `targets` blocks.
std::string program(int targets) {
    std::string text;
    for (int line = 1; line <= line_count; ++line) {
        const std::string number = std::to_string(line);
        text.append("N").append(number).append(" G1 X").append(number).append(".125 Y-3.21 F250");
        if (targets > 0 && line % 1000 == 0) {
            text += " GOTO" + std::to_string(line / 1000 % targets * 997 + 1);
        }
        text += "\r\n";
    }
    return text;
}

/// The shortest of some runs: the others were disturbed.
template <typename Work>
Seconds shortest(Work work) {
    Seconds best = 1e9;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<Seconds> taken = std::chrono::steady_clock::now() - start;
        best = std::min(best, taken.count());
    }
    return best;
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

bool faster_than(const std::string& awk, const std::string& folder, Seconds own) {
    if (std::system(("command -v " + awk + " >/dev/null 2>&1").c_str()) != 0) {
        std::cout << "  " << awk << " is not installed\n";
        return true;
    }
    const std::string command = "cd '" + folder + "' && LC_ALL=C " + awk +
                                " '{ sub(/^N[0-9. ]*/, \"\"); print \"N\" (n += 10) \" \" $0 }'"
                                " program > by_awk";
    bool same = true;
    const Seconds other = shortest([&] { same = std::system(command.c_str()) == 0 && same; });
    same = same && read(folder + "/by_awk") == read(folder + "/renumbered");
    std::cout << "  " << awk << " " << other << " s, kelvane " << own << " s"
              << (same ? "\n" : ", DIFFERENT RESULTS\n");
    return promise("times as fast as " + awk, other / own, Limit::at_least, 1) && same;
}

bool measure(const std::string& folder) {
    const double base = peak_memory();
    write(folder + "/program", program(0));
    const auto size = static_cast<double>(std::filesystem::file_size(folder + "/program"));
    const Seconds own = shortest(
        [&folder] { write(folder + "/renumbered", renumbered(read(folder + "/program"), true)); });
    std::cout << line_count << " lines, " << size / 1e6 << " MB, file to file:\n";
    bool kept = promise("memory, files' sizes", (peak_memory() - base) / size, Limit::at_most, 4);
    for (const char* awk : {"mawk", "gawk"}) {
        kept = faster_than(awk, folder, own) && kept;
    }
    const std::string one = program(1);
    const std::string many = program(1000);
    const Seconds with_one = shortest([&one] { renumbered(one, true); });
    const Seconds with_many = shortest([&many] { renumbered(many, true); });
    std::cout << "1000 GOTOs: to one target " << with_one << " s, to 1000 " << with_many << " s\n";
    return promise("times the cost of one target", with_many / with_one, Limit::at_most, 1.5) &&
           kept;
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
