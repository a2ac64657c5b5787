// A receive as fast as a pseudo-terminal can be: nothing of it may be lost.

#include <chrono>
#include <iostream>
#include <string>

#include "promise.h"
#include "support/program_process.h"
#include "support/pty_line.h"

namespace {

using namespace std::chrono_literals;
using namespace kelvane::bench;
using namespace kelvane::testing;

constexpr auto patience = 120s;
constexpr std::size_t size = 10'000'000;

std::string numbered_lines() {
    std::string text;
    for (int line = 1; text.size() < size; ++line) {
        text += "N" + std::to_string(line) + " G1 X123.456 Y-78.901\r\n";
    }
    return text;
}

bool receive_all() {
    Pty_line line;
    const Program_directory folder;
    folder.connect(line.device());
    const auto program = folder.start(Program_directory::job(2, folder.path("BACK.NC")));
    static_cast<void>(wait_until([&] { return folder.exists("scratchpad data 5"); }, patience));
    const std::string text = numbered_lines();
    const auto start = std::chrono::steady_clock::now();
    const bool taken = line.send(text);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    const bool ended = program->exit_within(patience) == 0;
    const std::string received = folder.content("BACK.NC");
    std::cout << "  " << static_cast<double>(text.size()) / 1e6 << " MB, taken at "
              << static_cast<double>(text.size()) / 1e6 / time.count() << " MB/s\n";
    const auto lost = static_cast<double>(text.size()) - static_cast<double>(received.size());
    return promise("characters lost", lost, Limit::at_most, 0) && received == text && taken &&
           ended;
}

}  // namespace

int main() {
    const bool kept = receive_all();
    std::cout << (kept ? "" : "  BROKEN  what was saved is not what was sent\n");
    return kept ? 0 : 1;
}
