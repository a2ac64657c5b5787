// How fast received bytes become text: the program's own routine on real files and with the real
// event loop, against `tr` (which does less: it only clears the parity bits) on the same file in
// the same run.

#include <QApplication>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "desktop/disk_files.h"
#include "desktop/qt_event_loop.h"
#include "frame/program.h"
#include "promise.h"
#include "receive/conversion.h"
#include "support/headless_platform.h"
#include "support/program_process.h"

namespace {

using namespace kelvane;
using namespace kelvane::bench;
using namespace kelvane::testing;
using Seconds = double;

constexpr std::size_t size = 50'000'000;
constexpr int rounds = 5;
constexpr const char* staging = "scratchpad data 5";

/// Even parity, lines ended by CR LF.
std::string tape() {
    const Code_tables tables = Build_code_tables();
    std::string text;
    for (int line = 1; text.size() < size; ++line) {
        text += "N" + std::to_string(line) + " G1 X123.456 Y-78.901 F2500\r\n";
    }
    for (char& character : text) {
        character = static_cast<char>(tables.code_table[static_cast<unsigned char>(character)][0]);
    }
    return text;
}

template <typename Work>
Seconds time_of(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<Seconds> taken = std::chrono::steady_clock::now() - start;
    return taken.count();
}

/// The one in the middle of some runs, each after `prepare`.
template <typename Prepare, typename Work>
Seconds usual_time(Prepare prepare, Work work) {
    std::vector<Seconds> times;
    for (int round = 0; round < rounds; ++round) {
        prepare();
        times.push_back(time_of(work));
    }
    std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
    return times[rounds / 2];
}

/// The program without windows, on real files and the real clock.
struct Program_on_disk {
    explicit Program_on_disk(const std::string& folder) : files(folder) { program.start(); }

    /// The staging file's conversion; true when it has become text.
    bool converts_file() { return runs(convert_file()); }
    /// The conversion of bytes in memory; true when it has become text of the same size.
    bool converts(std::string_view raw) { return runs(convert(raw)); }

    bool runs(Task<> work) {
        done = false;
        Task_keeper keeper(loop);
        keeper.start(std::move(work));
        if (!keeper.empty()) {
            QApplication::exec();
        }
        return done;
    }
    Task<> convert_file() {
        const Receive::Text_or_trouble result = co_await program.receive.code_convert_file(options);
        done = std::holds_alternative<Receive::Text>(result);
        QApplication::exit();
    }
    Task<> convert(std::string_view raw) {
        const Received_code code{receive_ascii, 0x8D};
        const std::string text = co_await converted_text(loop, program.code_tables, raw, code,
                                                         conversion_options(options));
        done = text.size() == raw.size();
        QApplication::exit();
    }

    Qt_event_loop loop;
    Headless_platform doubles;
    Disk_files files;
    Platform platform{loop,
                      doubles.windows,
                      doubles.boxes,
                      doubles.file_dialog,
                      doubles.printer,
                      doubles.machine,
                      doubles.desktop,
                      files};
    Program program{platform};
    Transfer_options options = load_transfer_options(files, "(default)").options;
    bool done = false;
};

bool measure(const Program_directory& folder) {
    const std::string raw = tape();
    const double megabytes = static_cast<double>(raw.size()) / 1e6;
    folder.put("raw", raw);
    const std::string tr = "LC_ALL=C tr '\\200-\\377' '\\000-\\177' <'" + folder.path("raw") +
                           "' >'" + folder.path("by tr") + "'";
    bool done = true;
    const Seconds by_tr = usual_time([] {}, [&] { done = std::system(tr.c_str()) == 0 && done; });

    Program_on_disk disk(folder.path("."));
    // As in a receive, where the bytes are safe on the disk before they are converted.
    const auto stage = [&] {
        done = disk.files.replace(folder.path(staging), raw).has_value() && done;
    };
    const Seconds file_to_file = usual_time(stage, [&] { done = disk.converts_file() && done; });
    const bool right = done && folder.content(staging) == folder.content("by tr");
    const Seconds in_memory = usual_time([] {}, [&] { done = disk.converts(raw) && done; });
    std::cout << "  " << megabytes << " MB: tr " << megabytes / by_tr << " MB/s\n";
    const bool kept =
        promise("conversion with its yields, MB/s", megabytes / in_memory, Limit::at_least, 100);
    return promise("file to file, safe on disk, MB/s", megabytes / file_to_file, Limit::at_least,
                   100) &&
           kept && right && done;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    return measure(Program_directory()) ? 0 : 1;
}
