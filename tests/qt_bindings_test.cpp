#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <cctype>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "desktop/bindings.h"
#include "desktop/qt_event_loop.h"
#include "desktop/qt_windows.h"
#include "qt_test_application.h"

namespace kelvane {
namespace {

void press_key(QWidget& widget, int key, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&widget, &press);
}

void type_text(QWidget& widget, const QString& text) {
    for (const QChar character : text) {
        press_key(widget, character.toUpper().unicode(), character);
    }
}

void press_row(QListWidget& list, int row) {
    const QPointF place = list.visualItemRect(list.item(row)).center();
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, place, list.viewport()->mapToGlobal(place), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(list.viewport(), &event);
    }
}

TEST(Bindings_test, a_button_shows_and_clicks_its_control) {
    int clicks = 0;
    Button control("Stop_button", "&Stop");
    control.on_click = [&] {
        ++clicks;
        control.set_caption("&Reset");
    };
    QPushButton widget;
    bind(control, widget);
    EXPECT_EQ(widget.objectName(), "Stop_button");
    EXPECT_EQ(widget.accessibleName(), "Stop");
    widget.click();
    EXPECT_EQ(widget.text(), "&Reset");
    EXPECT_EQ(widget.accessibleName(), "Reset");
    control.set_enabled(false);
    EXPECT_FALSE(widget.isEnabled());
    widget.click();
    EXPECT_EQ(clicks, 1);
}

TEST(Bindings_test, a_control_outlives_its_widget) {
    Button button("b", "b");
    Button item("i", "i");
    {
        QPushButton widget;
        QAction action;
        bind(button, widget);
        bind(item, action);
        action.trigger();
    }
    button.set_caption("changed");
    item.set_enabled(false);
}

TEST(Bindings_test, a_hidden_control_hides_its_widget_and_shows_no_loose_one) {
    Label shown("shown", "1");
    Label hidden("hidden", "2");
    hidden.set_visible(false);
    auto* shown_label = new QLabel;
    auto* hidden_label = new QLabel;
    bind(shown, *shown_label);
    bind(hidden, *hidden_label);
    EXPECT_FALSE(shown_label->isVisible());
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(shown_label);
    layout->addWidget(hidden_label);
    window.show();
    EXPECT_TRUE(shown_label->isVisible());
    EXPECT_FALSE(hidden_label->isVisible());
    hidden.set_visible(true);
    shown.set_visible(false);
    EXPECT_FALSE(shown_label->isVisible());
    EXPECT_TRUE(hidden_label->isVisible());
}

TEST(Bindings_test, a_check_box_follows_its_control_in_all_three_states) {
    Check_box control("chk", "Check");
    QCheckBox widget;
    bind(control, widget);
    widget.setAccessibleName("Check every line");
    widget.click();
    EXPECT_EQ(widget.accessibleName(), "Check every line");
    EXPECT_EQ(control.value(), 1);
    control.set_value(2);
    EXPECT_EQ(widget.checkState(), Qt::PartiallyChecked);
    widget.click();
    EXPECT_EQ(control.value(), 1);
    EXPECT_EQ(widget.checkState(), Qt::Checked);
    control.on_click = [&] { control.set_value(1); };  // a form that does not let go
    widget.click();
    EXPECT_EQ(widget.checkState(), Qt::Checked);
}

TEST(Bindings_test, options_follow_each_other_and_may_all_be_off) {
    Option_button first("a", "A");
    Option_button second("b", "B");
    first.join(second);
    QWidget group;
    QRadioButton a(&group);
    QRadioButton b(&group);
    bind(first, a);
    bind(second, b);
    EXPECT_FALSE(a.isChecked() || b.isChecked());
    a.click();
    EXPECT_TRUE(first.value() && a.isChecked());
    second.set_value(true);
    EXPECT_TRUE(b.isChecked() && !a.isChecked() && !first.value());
    second.set_value(false);
    EXPECT_FALSE(a.isChecked() || b.isChecked());
}

TEST(Bindings_test, typed_keys_are_filtered_and_pasted_text_is_not) {
    Text_box control("txt");
    control.accepts_key = [](char key) { return std::isdigit(static_cast<unsigned char>(key)); };
    QLineEdit widget;
    bind(control, widget);
    type_text(widget, "1a2b3");
    EXPECT_EQ(control.text(), "123");
    press_key(widget, Qt::Key_Backspace, "\b");
    EXPECT_EQ(control.text(), "12");
    QGuiApplication::clipboard()->setText("x\r\ny\n");
    widget.paste();
    EXPECT_EQ(control.text(), "12xy");
    EXPECT_EQ(widget.text(), "12xy");
}

TEST(Bindings_test, text_is_latin_1_and_names_are_utf_8) {
    Text_box text("text");
    Text_box name("name");
    QLineEdit text_widget;
    QLineEdit name_widget;
    bind(text, text_widget);
    bind(name, name_widget, Text_form::name);
    type_text(text_widget, QStringLiteral("\u00E4\u20AC!"));  // no euro sign in Latin-1
    type_text(name_widget, QStringLiteral("\u00E4\u20AC!"));
    EXPECT_EQ(text.text(), "\xE4!");
    EXPECT_EQ(name.text(), "\xC3\xA4\xE2\x82\xAC!");
    name.set_text("\xE4");
    EXPECT_EQ(name_widget.text(), QStringLiteral("\u00E4"));
}

TEST(Bindings_test, a_text_that_code_sets_leaves_the_caret_and_enter_goes_to_the_control) {
    Text_box control("txt");
    int entered = 0;
    control.on_enter = [&] { ++entered; };
    control.on_change = [&] { control.set_text(control.text().substr(0, 3)); };
    QLineEdit widget;
    bind(control, widget);
    type_text(widget, "abcd");
    EXPECT_EQ(widget.text(), "abc");
    widget.setCursorPosition(1);
    control.set_text("xyz");
    EXPECT_EQ(widget.cursorPosition(), 1);
    press_key(widget, Qt::Key_Return, "\r");
    EXPECT_EQ(entered, 1);
}

TEST(Bindings_test, focus_selects_all_where_the_control_says_so) {
    Text_box control("txt");
    control.set_text("abc");
    control.selects_all_on_focus = true;
    QLineEdit widget;
    bind(control, widget);
    QFocusEvent focus(QEvent::FocusIn, Qt::MouseFocusReason);
    QCoreApplication::sendEvent(&widget, &focus);
    QCoreApplication::processEvents();
    EXPECT_EQ(widget.selectedText(), "abc");
}

class List_binding_test : public ::testing::Test {
  protected:
    void SetUp() override {
        control.set_items({"zero", "one", "two"});
        control.on_mouse_down = [this] { log += std::to_string(control.selected()); };
        control.on_double_click = [this] { log += "!"; };
        bind(control, widget);
        widget.show();
    }
    List_box control{"lst"};
    QListWidget widget;
    std::string log;
};

TEST_F(List_binding_test, every_press_is_one_choice_also_on_the_chosen_row) {
    press_row(widget, 1);
    press_row(widget, 1);
    press_row(widget, 2);
    EXPECT_EQ(log, "112");
    EXPECT_EQ(control.selected_text(), "two");
}

TEST_F(List_binding_test, keys_choose_and_enter_is_a_double_click) {
    press_row(widget, 0);
    press_key(widget, Qt::Key_Down);
    press_key(widget, Qt::Key_Return);
    EXPECT_EQ(log, "01!");
    press_row(widget, 1);
    EXPECT_EQ(log, "01!1");
}

TEST_F(List_binding_test, code_selects_without_a_handler) {
    control.select(2);
    EXPECT_EQ(widget.currentRow(), 2);
    control.select(-1);
    EXPECT_TRUE(widget.selectedItems().isEmpty());
    control.add("three");
    control.select(3);
    EXPECT_EQ(widget.selectedItems().first()->text(), "three");
    EXPECT_EQ(log, "");
}

TEST_F(List_binding_test, a_handler_may_change_the_items) {
    control.on_mouse_down = [this] { control.set_items({"new"}); };
    press_row(widget, 2);
    EXPECT_EQ(widget.count(), 1);
    EXPECT_TRUE(widget.selectedItems().isEmpty());
}

TEST(Bindings_test, labels_show_marks_only_as_access_keys) {
    struct Row {
        const char* caption;
        bool plain;
        bool buddy;
        const char* shown;
    };
    constexpr Row rows[] = {{"&Name && port", false, true, "&Name && port"},
                            {"&Name && port", false, false, "Name & port"},
                            {"A & B", true, false, "A & B"},
                            {"A & B", true, true, "A && B"}};
    for (const Row& row : rows) {
        Label control("lbl", row.caption);
        control.plain = row.plain;
        QLineEdit field;
        QLabel widget;
        widget.setBuddy(row.buddy ? &field : nullptr);
        bind(control, widget);
        EXPECT_EQ(widget.text(), row.shown);
    }
}

TEST(Bindings_test, a_spinner_takes_the_range_and_the_value) {
    Scroll_bar control("spin", 1, 128);
    QSpinBox widget;
    bind(control, widget);
    control.set_value(500);
    EXPECT_EQ(widget.value(), 128);
    widget.stepDown();
    EXPECT_EQ(control.value(), 127);
}

/// A form that unloads only when it is told to twice.
class Test_form : public Form {
  public:
    explicit Test_form(Window_system& windows) : Form(windows, "Test_form", "Test") {}
    Text_box field{"field"};
    int wishes = 0;
    void close() override {
        if (++wishes == 2) {
            unload();
        }
    }
};

std::unique_ptr<QDialog> make_test_dialog(Test_form& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* field = new QLineEdit(dialog.get());
    auto* label = new QLabel("&Field:", dialog.get());
    label->setBuddy(field);
    bind(form.field, *field);
    finish_dialog(*dialog);
    return dialog;
}

TEST(Qt_windows_test, the_form_decides_about_closing_its_window) {
    Qt_event_loop loop;
    Qt_windows windows(loop);
    Test_form form(windows);
    windows.add(form, make_test_dialog);
    form.show();
    QWidget* window = windows.window_of(form);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), "Test");
    EXPECT_EQ(window->findChild<QLineEdit*>("field")->accessibleName(), "Field");
    press_key(*window, Qt::Key_Escape);
    EXPECT_TRUE(window->isVisible());
    window->close();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(form.loaded());
    windows.clear();
}

TEST(Qt_windows_test, a_modal_form_waits_until_anybody_hides_it) {
    Qt_event_loop loop;
    Qt_windows windows(loop);
    Test_form form(windows);
    windows.add(form, make_test_dialog);
    Timer closer(loop, 5);
    closer.on_tick = [&] {
        EXPECT_EQ(windows.window_of(form)->windowModality(), Qt::ApplicationModal);
        form.hide();
    };
    closer.set_enabled(true);
    form.show_modal();
    EXPECT_FALSE(windows.window_of(form)->isVisible());
    EXPECT_TRUE(form.loaded());
    windows.clear();
}

}  // namespace
}  // namespace kelvane
