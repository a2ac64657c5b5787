// How long the listing of a program takes to stand in a PDF file, for programs of several lengths,
// beside `enscript` and `ps2pdf`. Each listing is a process of its own, as the peers' are.
// Ends with status 1 when a promise is broken.

#include <QApplication>
#include <QTemporaryDir>
#include <iostream>
#include <string>

#include "beside.h"
#include "desktop/disk_files.h"
#include "desktop/qt_printer.h"
#include "frame/main_window.h"
#include "print/program_listing.h"
#include "promise.h"
#include "support/headless_platform.h"

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr int rounds = 5;

/// "PART.NC" of `folder` becomes its "Program listing.pdf".
bool print(const std::string& folder) {
    kelvane::testing::Headless_platform doubles;
    Disk_files files(folder);
    Qt_windows windows(doubles.loop);
    Qt_printer printer(files, windows);
    Platform platform = doubles.with(doubles.loop, printer, files);
    Kelvane_lite_form window(platform);
    Program_listing listing(platform, window, window.control, window.state);
    window.state.filename = folder + "/PART.NC";
    doubles.loop.run(listing.Print_listing());
    return files.exists(folder + "/Program listing.pdf");
}

bool write_program(const std::string& folder, int lines) {
    std::string text;
    for (int line = 1; line <= lines; ++line) {
        text += "N" + std::to_string(line) + " G01 X" + std::to_string(line * 7 % 1000) +
                ".5 Y-67.89 F250 (CUT)\r\n";
    }
    return Disk_files(folder).replace(folder + "/PART.NC", text).has_value();
}

bool compare(const std::string& self, const std::string& folder, int lines) {
    const std::string in_folder = "cd '" + folder + "' && ";
    bool done = write_program(folder, lines);
    const Seconds own =
        usual_time(rounds, [&] { done = command("'" + self + "' '" + folder + "'") && done; });
    const Seconds theirs = usual_time(rounds, [&] {
        done = command(in_folder + "enscript -q -p - PART.NC | ps2pdf - by_enscript.pdf") && done;
    });
    beside("listing of " + std::to_string(lines) + " lines, s", own, "enscript, ps2pdf", theirs);
    return promise("times as fast", theirs / own, Limit::at_least, 1) && done;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("CUPS_SERVER", "/nonexistent/cups.sock");
    const QApplication application(argc, argv);
    if (argc == 2) {
        return print(argv[1]) ? 0 : 1;
    }
    if (!command("command -v enscript >/dev/null && command -v ps2pdf >/dev/null")) {
        std::cout << "  enscript or ps2pdf is not installed\n";
        return 0;
    }
    const QTemporaryDir folder;
    bool kept = true;
    for (const int lines : {1'000, 5'000, 20'000}) {
        kept = compare(argv[0], folder.path().toStdString(), lines) && kept;
    }
    return kept ? 0 : 1;
}
