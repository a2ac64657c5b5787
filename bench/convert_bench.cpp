// How fast received bytes become text: the program's own routine on real files and with the real
// event loop, against `tr` (which does less: it only clears the parity bits) on the same file in
// the same run.

#include <QApplication>
#include <string>
#include <string_view>
#include <utility>

#include "beside.h"
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

constexpr int rounds = 5;
/// Below this the disk's delays count for more than the work.
constexpr std::size_t promised_from = 50;  // MB
constexpr const char* staging = "scratchpad data 5";

/// Even parity, lines ended by CR LF.
std::string tape(std::size_t size) {
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
    Platform platform = doubles.with(loop, doubles.printer, files);
    Program program{platform};
    Transfer_options options = load_transfer_options(files, "(default)").options;
    bool done = false;
};

bool keeps_promises(std::size_t megabytes, Seconds in_memory, Seconds file_to_file) {
    const auto speed = [&](Seconds time) { return static_cast<double>(megabytes) / time; };
    const bool kept =
        promise("conversion with its yields, MB/s", speed(in_memory), Limit::at_least, 100);
    return promise("file to file, safe on disk, MB/s", speed(file_to_file), Limit::at_least, 100) &&
           kept;
}

bool measure(const Program_directory& folder, std::size_t megabytes) {
    const std::string raw = tape(megabytes * 1'000'000);
    const std::string size = std::to_string(megabytes) + " MB, s";
    folder.put("raw", raw);
    const std::string tr = "LC_ALL=C tr '\\200-\\377' '\\000-\\177' <'" + folder.path("raw") +
                           "' >'" + folder.path("by tr") + "'";
    const std::string sync = " && sync '" + folder.path("by tr") + "'";
    bool done = true;
    const Seconds by_tr = usual_time(rounds, [&] { done = command(tr) && done; });
    const Seconds by_tr_synced = usual_time(rounds, [&] { done = command(tr + sync) && done; });

    Program_on_disk disk(folder.path("."));
    // As in a receive, where the bytes are safe on the disk before they are converted.
    const auto stage = [&] {
        done = disk.files.replace(folder.path(staging), raw).has_value() && done;
    };
    const Seconds file_to_file =
        usual_time(rounds, stage, [&] { done = disk.converts_file() && done; });
    done = done && folder.content(staging) == folder.content("by tr");
    const Seconds in_memory = usual_time(rounds, [&] { done = disk.converts(raw) && done; });
    beside("conversion in memory, " + size, in_memory, "tr, file to file", by_tr);
    beside("conversion file to file, safe on the disk, " + size, file_to_file, "tr and sync",
           by_tr_synced);
    return done &&
           (megabytes < promised_from || keeps_promises(megabytes, in_memory, file_to_file));
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const Program_directory folder;
    bool kept = true;
    for (const std::size_t megabytes : {1, 10, 50}) {
        kept = measure(folder, megabytes) && kept;
    }
    return kept ? 0 : 1;
}
