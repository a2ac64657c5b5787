#include <QApplication>
#include <QIcon>
#include <exception>
#include <functional>
#include <iostream>
#include <string>
#include <string_view>

#include "desktop/disk_files.h"
#include "desktop/end_signals.h"
#include "desktop/markdown_look.h"
#include "desktop/program_windows.h"
#include "desktop/qt_desktop_services.h"
#include "desktop/qt_event_loop.h"
#include "desktop/qt_file_dialog.h"
#include "desktop/qt_message_box.h"
#include "desktop/qt_printer.h"
#include "desktop/qt_serial_port.h"
#include "desktop/qt_windows.h"
#include "desktop/standard_streams.h"
#include "frame/command_line.h"
#include "frame/program.h"

namespace {

using namespace kelvane;

constexpr int status_of_wrong_usage = 2;

/// The last defence: what no routine has caught ends the event in which it happened, not the
/// program, which is told to give up what was going on.
class Application : public QApplication {
  public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::exception& fault) {
            qCritical("Unexpected fault: %s", fault.what());
        } catch (...) {
            qCritical("Unexpected fault");
        }
        if (after_fault) {
            after_fault();
        }
        return true;
    }

    std::function<void()> after_fault;
};

/// The arguments that Qt has left, byte for byte.
std::string joined_arguments(int count, char** arguments) {
    std::string joined;
    for (int i = 1; i < count; ++i) {
        joined += (i == 1 ? "" : " ") + std::string(arguments[i]);
    }
    return joined;
}

/// Answers the options that ask about the program itself, for which no window is needed; false
/// without such an option.
bool answers_options(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help") {
            std::cout << usage_text();
            return true;
        }
        if (argument == "--version") {
            std::cout << "kelvane-lite " << program_version() << '\n';
            return true;
        }
    }
    return false;
}

/// Ends the windows while the forms that they show still exist.
struct Window_end {
    Qt_windows& windows;
    ~Window_end() { windows.clear(); }
};

}  // namespace

int main(int argc, char** argv) {
    guard_standard_streams();
    if (answers_options(argc, argv)) {
        return 0;
    }
    Application application(argc, argv);
    if (const std::string error = command_line_error(joined_arguments(argc, argv));
        !error.empty()) {
        tell_standard_error("kelvane-lite: " + error + "\n" + std::string(usage_text()));
        return status_of_wrong_usage;
    }
    Application::setApplicationName("kelvane-lite");
    QIcon icon;
    for (const char* size : {"16", "32", "48", "128"}) {
        icon.addFile(QString(":/kelvane-lite-%1.png").arg(size));
    }
    Application::setWindowIcon(icon);
    make_links_readable();
    Application::setDesktopFileName("kelvane-lite");
    // No display name: the system would append it to every window's title.
    Application::setQuitOnLastWindowClosed(false);

    Qt_event_loop loop;
    Disk_files files(find_program_directory());
    Qt_windows windows(loop);
    windows.remember_places(files);
    Qt_message_box message_box(windows);
    Qt_file_dialog file_dialog(windows);
    Qt_printer printer(files, windows);
    Qt_serial_port port(loop);
    Qt_desktop_services desktop(joined_arguments(argc, argv), files.program_directory());
    Platform platform{loop, windows, message_box, file_dialog, printer, port, desktop, files};

    Program program(platform);
    const Window_end window_end{windows};
    add_windows(windows, program);
    on_end_signals(application, [&program, &message_box] {
        message_box.stop_asking();
        program.end_unasked();
    });
    application.after_fault = [&program] { program.window.report_fault(Fault::unexpected); };
    if (desktop.claim_program_directory()) {
        files.remove_left_behind();
    }
    program.start();
    return windows.ended() ? windows.exit_status() : Application::exec();
}
