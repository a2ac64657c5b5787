// The finished program's windows: what every menu item shows, and that no control is without its
// widget.

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

#include "desktop/disk_files.h"
#include "desktop/program_windows.h"
#include "desktop/qt_event_loop.h"
#include "desktop/qt_file_dialog.h"
#include "desktop/qt_message_box.h"
#include "desktop/qt_printer.h"
#include "frame/program.h"
#include "qt_test_application.h"
#include "session/file_names.h"
#include "support/headless_platform.h"
#include "support/in_time.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::StartsWith;

/// The finished program, but for its serial port. Whatever it shows is described and then closed,
/// a file dialog by choosing `chosen_file` when that is set.
class Finished_program : public ::testing::Test {
  protected:
    Finished_program() {
        add_windows(windows, program);
        program.start();
        QObject::connect(&watch, &QTimer::timeout, [this] { close_dialogs(); });
        watch.start(1);
    }
    ~Finished_program() override { windows.clear(); }

    /// What comes when the item is clicked, one dialog after the other: name, title, modal or not,
    /// buttons.
    std::string shown_by(Button& item, const std::string& file) {
        shown.clear();
        chosen_file = file.empty() ? QString() : folder.filePath(QString::fromStdString(file));
        item.click();
        const auto end = loop.now() + in_time;
        wait_for(loop, [&] {
            return (!shown.empty() && windows.modal_window() == nullptr &&
                    program.window.tasks.empty()) ||
                   loop.now() >= end;
        });
        return shown;
    }

    /// Dialogs are left to the test.
    void stay_open() { watch.stop(); }

    QTemporaryDir folder;
    Headless_platform house;
    Qt_event_loop loop;
    Disk_files files{folder.path().toStdString()};
    Qt_windows windows{loop};
    Qt_message_box boxes{windows};
    Qt_file_dialog file_dialog{windows};
    Qt_printer printer{files, windows};
    Platform platform{loop,    windows,       boxes,         file_dialog,
                      printer, house.machine, house.desktop, files};
    Program program{platform};

  private:
    void close_dialogs() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<QDialog*>(widget);
            if (dialog != nullptr && dialog->isVisible() &&
                (windows.modal_window() == nullptr || windows.modal_window() == dialog)) {
                describe(*dialog);
                answer(*dialog);
                return;
            }
        }
    }

    void describe(const QDialog& dialog) {
        shown += dialog.objectName().toStdString() + "|" + dialog.windowTitle().toStdString();
        shown += windows.modal_window() == &dialog ? "|modal|" : "|modeless|";
        for (const QPushButton* button : dialog.findChildren<QPushButton*>()) {
            shown += button->text().remove('&').toStdString() + ",";
        }
        shown += "\n";
    }

    void answer(QDialog& dialog) {
        auto* files_to_choose = qobject_cast<QFileDialog*>(&dialog);
        EXPECT_TRUE(files_to_choose == nullptr ||
                    files_to_choose->findChild<QComboBox*>()->currentText() != "Computer")
            << "all the drives, but no folder";
        if (files_to_choose == nullptr || chosen_file.isEmpty()) {
            dialog.close();
            return;
        }
        QMetaObject::invokeMethod(files_to_choose, "accept");
        EXPECT_TRUE(dialog.isVisible()) << "no file is named yet";
        files_to_choose->selectFile(std::exchange(chosen_file, QString()));
        QMetaObject::invokeMethod(files_to_choose, "accept");
    }

    QTimer watch;
    QString chosen_file;
    std::string shown;
};

TEST_F(Finished_program, every_menu_item_shows_its_form_or_dialog) {
    const auto open = [](const std::string& what) {
        return "file_dialog|" + what + "|modal|Open,Cancel,\n";
    };
    const auto save = [](const std::string& what) {
        return "file_dialog|" + what + " from (default)|modal|Save,Cancel,\n";
    };
    const std::string missing = "message_box|Kelvane Lite|modal|OK,\n";
    const std::string overwrite = "message_box|Overwrite?|modal|Yes,No,\n";
    const std::string information = "Thank_you_form_lite|";
    const struct {
        std::size_t menu, item;
        std::string file, shown;
    } cases[] = {
        {0, 0, "", open("Send to (default)")},
        {0, 0, "NONE.NC", open("Send to (default)") + missing},
        {0, 1, "", save("Receive")},
        {0, 1, "PART.NC", save("Receive") + overwrite + save("Receive")},
        {0, 2, "NONE.NC", open("Print") + missing},
        {0, 3, "PART.BaK", open("Resequence") + "message_box|Can't resequence|modal|OK,\n"},
        {0, 3, "PART.NC",
         open("Resequence") + "resequence_form_lite|Resequence|modal|Resequence,Cancel,\n"},
        {0, 4, "NONE.NC", open("Binary send to (default)") + missing},
        {0, 5, "PART.NC", save("Binary receive") + overwrite + save("Binary receive")},
        {1, Edit_commands::open, "", open("Open program")},
        {1, Edit_commands::save_as, "PART.NC",
         "file_dialog|Save program as|modal|Save,Cancel,\n" + overwrite},
        {2, 0, "", "configure_IO_lite|Configure serial port|modeless|"},
        {2, 1, "", "select_device_form_lite|Select I/O device|modeless|Select,Close,\n"},
        {2, 2, "", "select_printer|Select printer|modal|"},
        {2, 3, "", "Page_layout_form_lite|Page layout|modal|"},
        {2, 4, "", "directories_form_lite|Files and directories|modal|"},
        {3, 0, "", "Line_monitor_form|Line monitor|modeless|"},
        {3, 1, "", "Test_line_form|Test line|modeless|"},
        {3, 2, "", "Transfer_log_form|Transfer log|modeless|Export...,Close,"},
        {3, 4, "", "Start_form|Send from a block|modal|"},
        {3, 5, "", "Compare_form|Compare programs|modal|"},
        {3, 6, "", "Help_form|Manual|modeless|"},
        {4, 0, "", information + "Kelvane Lite|modeless|OK,\n"},
        {4, 1, "", information + "Connecting a machine for the first time|modeless|OK,\n"},
        {4, 2, "", information + "Tape codes and handshakes|modeless|OK,\n"},
        {4, 3, "", information + "Command line|modeless|OK,\n"},
        {4, 4, "", information + "Trouble on the line|modeless|OK,\n"},
    };
    for (const char* name : {"PART.NC", "PART.BaK"}) {
        ASSERT_TRUE(files.replace(folder.filePath(name).toStdString(), "N1G0\r\n"));
    }
    for (const auto& c : cases) {
        Button& item = program.window.menus().at(c.menu).items[c.item];
        EXPECT_THAT(shown_by(item, c.file), StartsWith(c.shown)) << item.caption();
    }
}

/// The names of the controls that each class of forms declares in its header, by class.
std::multimap<std::string, std::string> declared_controls() {
    const std::regex form(R"(class (\w+) : public Form)");
    const std::regex control(
        R"(^ +(Button|Check_box|Option_button|Text_box|List_box|Label|Scroll_bar|Progress_bar|Rich_text|Table|State_field|Page_picture|Number_field) (\w+)[{;])");
    std::multimap<std::string, std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(SOURCE_FOLDER)) {
        if (!entry.path().filename().string().ends_with(".h")) {
            continue;
        }
        std::ifstream header(entry.path());
        std::smatch found;
        std::string name;
        for (std::string line; std::getline(header, line);) {
            if (std::regex_search(line, found, form)) {
                name = found[1];
            } else if (!name.empty() && std::regex_search(line, found, control)) {
                names.emplace(name, found[2]);
            }
        }
    }
    return names;
}

TEST_F(Finished_program, every_control_of_every_form_has_a_widget_of_its_name) {
    const auto controls = declared_controls();
    std::size_t walked = 0;
    for (Form* form : std::initializer_list<Form*>{
             &program.window, &program.configure_form, &program.advanced_form,
             &program.select_device_form, &program.directories_form, &program.set_directory_form,
             &program.information_form, &program.page_layout_form, &program.resequence_form,
             &program.line_monitor_form, &program.test_line_form, &program.help_form,
             &program.transfer_log_form, &program.start_form, &program.compare_form}) {
        const QWidget& window = *windows.window_of(*form);
        for (const QLabel* label : window.findChildren<QLabel*>()) {
            EXPECT_TRUE(label->accessibleName().isEmpty()) << "it would hide the text";
        }
        const auto [first, last] = controls.equal_range(form->name());
        for (auto control = first; control != last; ++control, ++walked) {
            const QString name = QString::fromStdString(control->second);
            EXPECT_NE(window.findChild<QWidget*>(name), nullptr)
                << form->name() << " " << name.toStdString();
        }
    }
    EXPECT_EQ(walked, controls.size());
    for (const Menu& menu : program.window.menus()) {
        for (const Button& item : menu.items) {
            EXPECT_NE(windows.window_of(program.window)
                          ->findChild<QAction*>(QString::fromStdString(item.name())),
                      nullptr);
        }
    }
}

std::string read_whole(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// Names of the pages and pictures that a page of the manual leads to; a picture to none.
std::vector<std::string> targets_of(const std::string& page) {
    if (!page.ends_with(".md")) {
        return {};
    }
    const std::string text = read_whole(std::string(SOURCE_FOLDER) + "/docs/manual/" + page);
    const std::regex link(R"(\]\(([^)]+)\))");
    std::vector<std::string> targets;
    for (std::sregex_iterator found(text.begin(), text.end(), link), end; found != end; ++found) {
        targets.push_back((*found)[1]);
    }
    return targets;
}

TEST_F(Finished_program, every_page_of_the_manual_can_be_reached_from_the_contents) {
    static_cast<void>(windows.window_of(program.help_form));
    std::set<std::string> reached;
    std::vector<std::string> to_follow = {std::string(help_contents) + ".md"};
    while (!to_follow.empty()) {
        const std::string page = to_follow.back();
        to_follow.pop_back();
        if (reached.insert(page).second) {
            EXPECT_TRUE(QFile::exists(QString::fromStdString(":/manual/" + page))) << page;
            const auto targets = targets_of(page);
            to_follow.insert(to_follow.end(), targets.begin(), targets.end());
        }
    }
    for (const auto& file : std::filesystem::directory_iterator(SOURCE_FOLDER "/docs/manual")) {
        EXPECT_TRUE(file.is_directory() || reached.contains(file.path().filename())) << file.path();
    }
}

void press(QWidget& widget, Qt::Key key) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
}

/// Names of the fields and buttons that can take the focus now; one of several options stands for
/// all.
std::set<std::string> taking_focus(const QWidget& window) {
    std::set<std::string> names;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const auto* option = qobject_cast<const QRadioButton*>(widget);
        if (widget->isVisible() && widget->isEnabled() && widget->focusProxy() == nullptr &&
            (widget->focusPolicy() & Qt::TabFocus) != 0 &&
            (option == nullptr || option->isChecked())) {
            names.insert(widget->objectName().toStdString());
        }
    }
    return names;
}

TEST_F(Finished_program, the_tabulator_reaches_all_of_every_window_and_begins_with_no_danger) {
    stay_open();
    for (Form* form : program.window.other_forms) {
        QWidget* window = windows.window_of(*form);
        if (window == nullptr) {
            continue;
        }
        form->show();
        const std::set<std::string> wanted = taking_focus(*window);
        std::set<std::string> reached;
        for (std::size_t i = 0; i < 2 * wanted.size() + 2; ++i) {
            QWidget* focus = window->focusWidget() == nullptr ? window : window->focusWidget();
            press(*focus, Qt::Key_Tab);
            ASSERT_NE(window->focusWidget(), nullptr) << form->name();
            const std::string name = window->focusWidget()->objectName().toStdString();
            EXPECT_FALSE(i == 0 && name == program.configure_form.Command3.name()) << "Delete";
            reached.insert(name);
        }
        EXPECT_THAT(reached, ::testing::IsSupersetOf(wanted)) << form->name();
        form->close();
    }
}

TEST_F(Finished_program, f1_opens_the_page_of_the_window_in_front_beside_a_modal_one_too) {
    stay_open();
    for (Form* form : program.window.other_forms) {
        QWidget* window = windows.window_of(*form);
        if (window == nullptr || form == &program.help_form) {
            continue;
        }
        windows.show(*form, true);
        wait_for(loop, [window] { return QApplication::activeWindow() == window; });
        press(*window, Qt::Key_F1);
        const std::string page = program.help_form.page.caption();
        EXPECT_EQ(page, help_page_of(form->name()));
        EXPECT_TRUE(QFile::exists(QString::fromStdString(":/manual/" + page + ".md"))) << page;
        press(*windows.window_of(program.help_form)->findChild<QWidget*>("contents"),
              Qt::Key_Space);
        EXPECT_EQ(program.help_form.page.caption(), help_contents) << form->name();
        program.help_form.close();
        window->hide();
    }
}

TEST(Window_places_test, what_is_too_large_scrolls_above_its_buttons_and_places_are_remembered) {
    Memory_files files;
    Window_places places;
    places.use(files);
    QDialog large;
    large.setObjectName("Large");
    auto* column = new QVBoxLayout(&large);
    auto* content = new QWidget;
    content->setMinimumSize(5000, 5000);
    auto* foot = new QDialogButtonBox;
    column->addWidget(content);
    column->addWidget(foot);
    places.place(large);
    const QSize room = large.screen()->availableSize();
    EXPECT_TRUE(large.width() < room.width() && large.height() < room.height());
    ASSERT_NE(large.findChild<QScrollArea*>(), nullptr);
    EXPECT_FALSE(large.findChild<QScrollArea*>()->isAncestorOf(foot));
    places.remember(large);
    EXPECT_NE(files.read(files.program_path(file_names::window_places))->find(",50"),
              std::string::npos)
        << "a larger screen shows it whole";
    large.setGeometry(20, 30, 300, 200);
    places.remember(large);

    Window_places next_run;
    next_run.use(files);
    QDialog again;
    again.setObjectName("Large");
    next_run.place(again);
    EXPECT_EQ(again.geometry(), QRect(20, 30, 300, 200));

    again.move(5000, 4000);  // on a larger screen
    next_run.remember(again);
    Window_places small_screen;
    small_screen.use(files);
    QDialog moved;
    moved.setObjectName("Large");
    small_screen.place(moved);
    EXPECT_TRUE(moved.screen()->availableGeometry().contains(moved.geometry()));
    small_screen.remember(moved);
    EXPECT_NE(files.content(files.program_path(file_names::window_places)).find("=5000,4000,300"),
              std::string::npos);
}

}  // namespace
}  // namespace kelvane::testing
