// Windows that are modal to all but the buttons of a running transfer.

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QShortcut>
#include <gtest/gtest.h>

#include "desktop/modality.h"
#include "desktop/qt_event_loop.h"
#include "desktop/qt_message_box.h"
#include "desktop/qt_windows.h"
#include "platform/task_keeper.h"
#include "qt_test_application.h"

namespace kelvane::testing {
namespace {

void click(QWidget& widget) {
    const QPointF at(3, 3);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, at, widget.mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
}

void press_key(QWidget& widget, int key, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&widget, &press);
}

struct Counting_shortcut : QShortcut {
    using QShortcut::QShortcut;
    bool event(QEvent* event) override {
        presses += event->type() == QEvent::Shortcut ? 1 : 0;
        return true;
    }
    int presses = 0;
};

/// A main window with a pane, a menu and the two buttons; another window that belongs to it.
class Modality_test : public ::testing::Test {
  protected:
    Modality_test() {
        for (QPushButton* button : {&send, &stop}) {
            Modality::keep_live(*button);
            QObject::connect(button, &QPushButton::clicked, [this] { ++presses; });
        }
        QObject::connect(&other_button, &QPushButton::clicked, [this] { taken += 'o'; });
        QObject::connect(&item, &QAction::triggered, [this] { taken += 'i'; });
        Modality::keep_live(stop_key);
        main.menuBar()->addMenu("&File")->addAction(&item);
        main.show();
        other.show();
    }
    /// What of the input beside the modal window has been taken.
    [[nodiscard]] std::string taken_elsewhere() {
        taken.clear();
        click(other_button);
        QShortcutEvent shortcut(QKeySequence("Ctrl+R"), 0);
        QCoreApplication::sendEvent(&item, &shortcut);
        pane.clear();
        press_key(pane, Qt::Key_A, "a");
        return taken + pane.text().toStdString();
    }

    QMainWindow main;
    QLineEdit pane{&main};
    QPushButton send{"Send", &main};
    QPushButton stop{"Stop", &main};
    Counting_shortcut stop_key{Qt::Key_F10, &main};
    QAction item{"&Receive"};
    QDialog other{&main};
    QPushButton other_button{"Other", &other};
    int presses = 0;
    std::string taken;
    Qt_event_loop loop;
    Qt_windows windows{loop};
    Qt_message_box boxes{windows};
    Task_keeper keeper{loop};
};

TEST_F(Modality_test, what_a_field_proposes_hands_on_the_keys) {
    QDialog dialog(&main);
    QLineEdit field(&dialog);
    QCompleter names(QStringList{"PART.NC"});
    field.setCompleter(&names);
    const auto run = [](Qt_windows& its_windows, QDialog& shown) -> Task<> {
        co_await its_windows.run(shown);
    };
    keeper.start(run(windows, dialog));
    press_key(field, Qt::Key_P, "P");
    ASSERT_TRUE(names.popup()->isVisible());
    press_key(*names.popup(), Qt::Key_A, "A");
    EXPECT_EQ(field.text(), "PA");
    dialog.close();
}

TEST_F(Modality_test, a_change_of_the_window_that_the_toolkit_has_missed_reaches_the_fields) {
    main.activateWindow();
    QCoreApplication::processEvents();
    ASSERT_EQ(QGuiApplication::focusWindow(), main.windowHandle());
    QApplication::setActiveWindow(nullptr);  // as when proposals close together with their dialog
    Q_EMIT qGuiApp->focusWindowChanged(main.windowHandle());
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::activeWindow(), &main);
}

TEST_F(Modality_test, a_box_blocks_all_but_send_stop_and_the_close_button) {
    ASSERT_EQ(taken_elsewhere(), "oia");
    std::string answers;
    const auto ask = [](Qt_message_box& message_box, std::string& log) -> Task<> {
        const Message message{"Overwrite?", "Question", Message_icon::none,
                              Message_buttons::yes_no};
        const Message_answer answer = co_await message_box.ask(message);
        log += answer == Message_answer::yes ? 'y' : 'n';
    };
    keeper.start(ask(boxes, answers));
    keeper.start(ask(boxes, answers));
    const auto shown = [] {
        QList<QMessageBox*> found;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(window);
            if (box != nullptr && box->isVisible()) {
                found << box;
            }
        }
        return found;
    };
    ASSERT_EQ(shown().size(), 2);
    EXPECT_EQ(taken_elsewhere(), "");
    click(send);
    click(stop);
    press_key(pane, Qt::Key_Tab);
    EXPECT_EQ(main.focusWidget(), &send) << "the keyboard finds no way out of what is blocked";
    QShortcutEvent shortcut(stop_key.key(), 0);
    QCoreApplication::sendEvent(&stop_key, &shortcut);
    EXPECT_EQ(stop_key.presses, 1);
    other.close();
    EXPECT_TRUE(other.isVisible());

    // The last one takes the input; the one under it waits for it.
    const auto first_of = [&](bool with_parent_box) {
        for (QMessageBox* box : shown()) {
            if ((qobject_cast<QMessageBox*>(box->parentWidget()) != nullptr) == with_parent_box) {
                return box;
            }
        }
        return static_cast<QMessageBox*>(nullptr);
    };
    QMessageBox* const below = first_of(false);
    click(*below->button(QMessageBox::Yes));
    EXPECT_EQ(answers, "");
    click(*first_of(true)->button(QMessageBox::Yes));
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, "y");
    press_key(*below, Qt::Key_Escape);
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, "yn");
    EXPECT_EQ(taken_elsewhere(), "oia");
    EXPECT_TRUE(keeper.empty());
}

TEST_F(Modality_test, a_window_that_qt_shows_modal_and_a_wait_that_is_given_up) {
    QDialog dialog(&other);
    dialog.setModal(true);
    dialog.show();
    EXPECT_EQ(taken_elsewhere(), "");
    click(stop);
    EXPECT_EQ(presses, 1);
    main.close();
    EXPECT_FALSE(main.isVisible());
    dialog.hide();
    EXPECT_EQ(taken_elsewhere(), "oia");

    keeper.start([](Qt_message_box& message_box) -> Task<> {
        const Message message{"Overwrite?", "Question"};
        co_await message_box.ask(message);
    }(boxes));
    EXPECT_EQ(taken_elsewhere(), "");
    keeper.end_all();
    EXPECT_EQ(taken_elsewhere(), "oia");
}

}  // namespace
}  // namespace kelvane::testing
