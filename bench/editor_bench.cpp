// How long programs of 1, 10 and 100 MB take to be seen in the editor, how long other events wait
// meanwhile, and what that costs in memory, beside a plain-text widget in the same run. Ends with
// status 1 when a promise is broken.

#include <QApplication>
#include <QFile>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "beside.h"
#include "desktop/disk_files.h"
#include "desktop/pane_view.h"
#include "desktop/qt_event_loop.h"
#include "frame/program.h"
#include "platform/task_keeper.h"
#include "promise.h"
#include "support/headless_platform.h"

namespace {

using namespace kelvane;
using kelvane::bench::beside;
using kelvane::bench::Limit;
using kelvane::bench::promise;
using kelvane::bench::Seconds;

struct Figures {
    Seconds first_lines = 0;   ///< from the choice of the file to its first lines on the screen
    Seconds whole = 0;         ///< until every line can be reached
    Seconds longest_wait = 0;  ///< of an event
    double memory = 0;         ///< most that has been needed beside an empty pane, in file sizes
};

Seconds now() {
    const std::chrono::duration<Seconds> time = std::chrono::steady_clock::now().time_since_epoch();
    return time.count();
}

/// Bytes, from the kernel's account of this process.
double memory_in_use(const std::string& kind) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == kind + ":") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    return 0;
}

void write_program(const std::string& path, std::size_t size) {
    std::ofstream file(path, std::ios::binary);
    std::size_t written = 0;
    for (int number = 1; written < size; ++number) {
        const std::string block =
            "N" + std::to_string(number) + " G01 X12.345 Y-67.89 F250 (CUT)\r\n";
        file << block;
        written += block.size();
    }
}

Task<> open_and_send(Program& program, std::string path) {
    co_await program.open_program.open(path);
    program.window.state.filename = path;
    const auto sent = program.transfer.Start_transfer(Transfer::send);
    co_await sent;
}

Figures measure_pane(const std::string& path) {
    Qt_event_loop loop;
    Disk_files files(folder_of(path));
    kelvane::testing::Scripted_file_dialog dialog{loop};
    kelvane::testing::Scripted_message_box boxes;
    kelvane::testing::Recorded_desktop desktop;
    Rich_text log("Text1");
    Open_program program(loop, files, dialog, boxes);
    Program_pane pane(log, program, desktop, files, [] { return false; });
    Pane_view view(pane);
    view.resize(900, 600);
    view.show();
    QApplication::processEvents();
    Task_keeper tasks(loop);
    Figures figures;
    const double before = memory_in_use("VmRSS");
    const Seconds start = now();
    Seconds turn = start;
    tasks.start(program.open(path));
    while (figures.whole == 0) {
        QApplication::processEvents();
        const Seconds end = now();
        figures.longest_wait = std::max(figures.longest_wait, end - turn);
        turn = end;
        if (figures.first_lines == 0 && pane.text().line_count() > 1) {
            figures.first_lines = end - start;
        }
        if (!program.loading() && tasks.empty()) {
            figures.whole = end - start;
        }
    }
    figures.memory = memory_in_use("VmHWM") - before;
    return figures;
}

/// The program opened and then sent, up to where the machine is to ask for it.
Figures measure_send(const std::string& path) {
    Qt_event_loop loop;
    kelvane::testing::Headless_platform doubles;
    Disk_files files(folder_of(path));
    Platform platform = doubles.with(loop, doubles.printer, files);
    doubles.boxes.expect("Using default COM port configuration");
    Program program(platform);
    program.start();
    Task_keeper tasks(loop);
    Figures figures;
    const double before = memory_in_use("VmRSS");
    const Seconds start = now();
    tasks.start(open_and_send(program, path));
    for (Seconds turn = start; figures.whole == 0;) {
        QApplication::processEvents();
        const Seconds end = now();
        figures.longest_wait = std::max(figures.longest_wait, end - turn);
        turn = end;
        if (program.window.control.state() == Transfer_state::waiting_for_start) {
            figures.whole = end - start;
        }
    }
    figures.memory = memory_in_use("VmHWM") - before;
    tasks.end_all();
    return figures;
}

Figures measure_widget(const std::string& path) {
    QPlainTextEdit widget;
    widget.resize(900, 600);
    widget.show();
    QApplication::processEvents();
    Figures figures;
    const double before = memory_in_use("VmRSS");
    const Seconds start = now();
    QFile file(QString::fromStdString(path));
    if (file.open(QIODevice::ReadOnly)) {
        widget.setPlainText(QString::fromLatin1(file.readAll()));
    }
    QApplication::processEvents();
    figures.first_lines = figures.whole = figures.longest_wait = now() - start;
    figures.memory = memory_in_use("VmHWM") - before;
    return figures;
}

/// In a process of its own, so that one measurement's memory is not the next one's.
Figures in_own_process(const std::function<Figures()>& measure) {
    int pipe_ends[2];
    Figures figures;
    if (::pipe(pipe_ends) != 0) {
        return figures;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        int count = 1;
        char name[] = "editor_bench";
        char* arguments[] = {name, nullptr};
        QApplication application(count, arguments);
        figures = measure();
        const bool told = ::write(pipe_ends[1], &figures, sizeof figures) == sizeof figures;
        ::_exit(told ? 0 : 1);
    }
    ::waitpid(child, nullptr, 0);
    if (::read(pipe_ends[0], &figures, sizeof figures) != sizeof figures) {
        figures = {};
    }
    ::close(pipe_ends[0]);
    ::close(pipe_ends[1]);
    return figures;
}

/// Each figure's middle one of some runs.
Figures usual_figures(const std::function<Figures()>& measure) {
    std::array<Figures, 3> runs;
    for (Figures& run : runs) {
        run = in_own_process(measure);
    }
    const auto middle = [&runs](auto member) {
        std::ranges::nth_element(runs, runs.begin() + runs.size() / 2, {}, member);
        return runs[runs.size() / 2].*member;
    };
    return {middle(&Figures::first_lines), middle(&Figures::whole), middle(&Figures::longest_wait),
            middle(&Figures::memory)};
}

void print(const char* what, const Figures& figures, double size) {
    std::cout << "  " << what << ": first lines " << figures.first_lines * 1000 << " ms, all "
              << figures.whole * 1000 << " ms, longest wait " << figures.longest_wait * 1000
              << " ms, memory " << figures.memory / size << " of the file\n";
}

bool compare(const std::string& path, std::size_t megabytes) {
    const double size = static_cast<double>(megabytes) * 1e6;
    write_program(path, megabytes * 1'000'000);
    std::cout << megabytes << " MB" << std::endl;
    const Figures pane = usual_figures([&] { return measure_pane(path); });
    const Figures widget = usual_figures([&] { return measure_widget(path); });
    print("editor", pane, size);
    print("plain-text widget", widget, size);
    const std::string load = "load of " + std::to_string(megabytes) + " MB, ";
    const char* peer = "plain-text widget";
    beside(load + "first lines, s", pane.first_lines, peer, widget.first_lines);
    beside(load + "longest wait of an event, s", pane.longest_wait, peer, widget.longest_wait);
    beside(load + "memory, MB", pane.memory / 1e6, peer, widget.memory / 1e6);
    bool kept = promise("first lines, s", pane.first_lines, Limit::at_most, 0.5);
    kept = promise("longest wait of an event, s", pane.longest_wait, Limit::at_most, 0.1) && kept;
    if (megabytes >= 100) {
        const Figures sent = usual_figures([&] { return measure_send(path); });
        print("open and being sent", sent, size);
        kept = promise("memory in file sizes", pane.memory / size, Limit::at_most, 1.5) && kept;
        kept = promise("while it is sent", sent.memory / size, Limit::at_most, 1.5) && kept;
    }
    return promise("time of the widget's wait in that of the editor",
                   widget.longest_wait / pane.longest_wait, Limit::at_least, 1) &&
           kept;
}

}  // namespace

int main() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir folder;
    const std::string path = folder.filePath("PROGRAM.NC").toStdString();
    bool kept = true;
    for (const std::size_t megabytes : {1, 10, 100}) {
        kept = compare(path, megabytes) && kept;
    }
    return kept ? 0 : 1;
}
