// The newcomer's way in real windows on a real line: add a machine, wire it, set it up, select it,
// send it a program and get one back.

#include <QCheckBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "desktop/disk_files.h"
#include "desktop/program_windows.h"
#include "desktop/qt_desktop_services.h"
#include "desktop/qt_event_loop.h"
#include "desktop/qt_serial_port.h"
#include "desktop/qt_windows.h"
#include "frame/program.h"
#include "qt_test_application.h"
#include "support/headless_platform.h"
#include "support/in_time.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;

void press_key(QWidget& widget, int key, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&widget, &press);
}

/// The program with real windows, files and port; only questions are answered by the test.
class Walk : public ::testing::Test {
  protected:
    Walk() { add_windows(windows, program); }
    ~Walk() override {
        machine.kill();
        machine.waitForFinished();
        windows.clear();
    }

    [[nodiscard]] std::string path(const std::string& name) const {
        return folder.filePath(QString::fromStdString(name)).toStdString();
    }
    template <typename Widget>
    Widget& find(const Form& form, const char* name) {
        auto* widget = windows.window_of(form)->findChild<Widget*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return *widget;
    }
    void type(const Form& form, const char* name, const std::string& text) {
        auto& field = find<QLineEdit>(form, name);
        field.selectAll();
        for (const char c : text) {
            press_key(field, 0, QString(QLatin1Char(c)));
        }
    }
    bool wait(const std::function<bool()>& condition) {
        const auto end = loop.now() + in_time;
        wait_for(loop, [&] { return condition() || loop.now() >= end; });
        return condition();
    }

    QTemporaryDir folder;
    QProcess machine;
    Headless_platform house;
    Qt_event_loop loop;
    Disk_files files{folder.path().toStdString()};
    Qt_windows windows{loop};
    Qt_desktop_services desktop{"", folder.path().toStdString()};
    Qt_serial_port port{loop};
    Platform platform{loop,          windows, house.boxes, house.file_dialog,
                      house.printer, port,    desktop,     files};
    Program program{platform};
};

TEST_F(Walk, from_the_first_start_to_a_program_sent_and_received) {
    const std::string nc = "%\r\nO0001\r\nN10 G0 X1.5 Y-2\r\nN20 M30\r\n%\r\n";
    ASSERT_TRUE(files.replace(path("PART.NC"), nc));
    ASSERT_EQ(::chdir(folder.path().toLocal8Bit()), 0);
    machine.start(SIMULATED_MACHINE,
                  {"--link", folder.filePath("line"), "--code", "eia", "--baud", "115200", "--read",
                   folder.filePath("OUT.NC"), "--punch", folder.filePath("PART.NC")});
    ASSERT_TRUE(wait([&] { return machine.canReadLine(); }));

    program.start();
    program.window.ConfigMenuItem[0].click();
    const Form& form = program.configure_form;
    ASSERT_TRUE(windows.window_of(form)->isVisible());
    type(form, "New_name_txt", "Mill 1");
    press_key(find<QLineEdit>(form, "New_name_txt"), Qt::Key_Return);
    EXPECT_EQ(find<QListWidget>(form, "IO_device_lst").currentItem()->text(), "Mill 1");
    type(form, "Device_txt", path("line"));
    find<QListWidget>(form, "BAUD_lst").setCurrentRow(0);
    find<QCheckBox>(form, "chk_EIA").click();
    EXPECT_FALSE(find<QCheckBox>(form, "chk_CRLF").isEnabled());
    find<QPushButton>(form, "Advanced_button").click();
    EXPECT_TRUE(windows.window_of(program.advanced_form)->isVisible());
    type(program.advanced_form, "Timeout_txt", "1s");
    press_key(*windows.window_of(program.advanced_form), Qt::Key_Escape);
    find<QPushButton>(form, "apply_button").click();
    EXPECT_FALSE(windows.window_of(form)->isVisible());
    EXPECT_EQ(files.read(path("Serial port devices")), "COM1=" + path("line") + "\r\n");

    program.window.ConfigMenuItem[1].click();
    find<QListWidget>(program.select_device_form, "IO_device_lst").setCurrentRow(1);
    find<QPushButton>(program.select_device_form, "Command1").click();
    EXPECT_EQ(program.window.state.IO_device_name, "Mill 1");

    house.file_dialog.answers = {{File_purpose::open, path("PART.NC")}};
    program.window.FileMenuItem[0].click();
    ASSERT_TRUE(wait([&] { return files.exists(path("OUT.NC")); }));
    EXPECT_THAT(files.read(path("OUT.NC")).value_or(""),
                ::testing::HasSubstr("O0001\r\nN10 G0 X1.5 Y-2\r\nN20 M30\r\n%"));

    house.file_dialog.answers = {{File_purpose::save, path("BACK.NC")}};
    program.window.FileMenuItem[1].click();
    ASSERT_TRUE(wait([&] { return program.window.control.busy() == 0; }));
    EXPECT_THAT(files.read(path("BACK.NC")).value_or(""),
                ::testing::HasSubstr("O0001\r\nN10 G0 X1.5 Y-2\r\nN20 M30\r\n%"));
}

}  // namespace
}  // namespace kelvane::testing
