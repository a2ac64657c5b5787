#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QTextBlock>
#include <QTextDocument>
#include <QVBoxLayout>
#include <cctype>
#include <gtest/gtest.h>
#include <memory>

#include "desktop/bindings.h"
#include "desktop/dialog_parts.h"
#include "desktop/log_view.h"
#include "desktop/qt_event_loop.h"
#include "desktop/qt_windows.h"
#include "platform/task_keeper.h"
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

/// A control and the widget that shows it.
template <typename Control, typename Widget>
struct Bound {
    template <typename... Arguments>
    explicit Bound(Arguments... arguments) : control(arguments...) {
        bind(control, widget);
    }
    Control control;
    Widget widget;
};
using Bound_text = Bound<Text_box, QLineEdit>;

TEST(Bindings_test, a_button_shows_and_clicks_its_control_which_outlives_it) {
    int clicks = 0;
    Button control("Stop_button", "&Stop");
    control.on_click = [&] {
        ++clicks;
        control.set_caption("&Reset");
    };
    {
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
    control.set_caption("changed");
}

TEST(Bindings_test, a_hidden_control_hides_its_widget_and_shows_no_loose_one) {
    Label control("label", "1");
    auto* widget = new QLabel;
    bind(control, *widget);
    EXPECT_FALSE(widget->isVisible());
    QWidget window;
    QVBoxLayout layout(&window);
    layout.addWidget(widget);
    window.show();
    EXPECT_TRUE(widget->isVisible());
    control.set_visible(false);
    EXPECT_FALSE(widget->isVisible());
}

TEST(Bindings_test, a_check_box_follows_its_control_in_all_three_states) {
    Bound<Check_box, QCheckBox> box("chk", "Check");
    box.widget.setAccessibleName("Check every line");
    box.widget.click();
    EXPECT_EQ(box.widget.accessibleName(), "Check every line");
    EXPECT_EQ(box.control.value(), 1);
    box.control.set_value(2);
    EXPECT_EQ(box.widget.checkState(), Qt::PartiallyChecked);
    box.widget.click();
    EXPECT_EQ(box.control.value(), 1);
    box.control.on_click = [&] { box.control.set_value(1); };  // a form that does not let go
    box.widget.click();
    EXPECT_EQ(box.widget.checkState(), Qt::Checked);
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
    Bound_text box("txt");
    box.control.accepts_key = [](char key) { return std::isdigit(key) != 0; };
    type_text(box.widget, "1a2b3");
    press_key(box.widget, Qt::Key_Backspace, "\b");
    EXPECT_EQ(box.control.text(), "12");
    QGuiApplication::clipboard()->setText("x\r\ny\n");
    box.widget.paste();
    EXPECT_EQ(box.control.text(), "12xy");
    EXPECT_EQ(box.widget.text(), "12xy");
}

TEST(Bindings_test, text_is_latin_1_and_names_are_utf_8) {
    Bound_text text("text");
    Text_box name("name");
    QLineEdit name_widget;
    bind(name, name_widget, Text_form::name);
    for (QLineEdit* widget : {&text.widget, &name_widget}) {
        type_text(*widget, QStringLiteral("\u00E4\u20AC!"));  // no euro sign in Latin-1
    }
    EXPECT_EQ(text.control.text(), "\xE4!");
    EXPECT_EQ(name.text(), "\xC3\xA4\xE2\x82\xAC!");
    name.set_text("\xE4");
    EXPECT_EQ(name_widget.text(), QStringLiteral("\u00E4"));
    EXPECT_EQ(to_screen("\xC3\xA4 \xB7 \xE2\x82\xAC\xE2\x82"),
              QStringLiteral("\u00E4 \u00B7 \u20AC\u00E2\u0082"))
        << "names of several origins";
}

TEST(Bindings_test, a_text_that_code_sets_leaves_the_caret_and_enter_goes_to_the_control) {
    Bound_text box("txt");
    int entered = 0;
    box.control.on_enter = [&] { ++entered; };
    box.control.on_change = [&] { box.control.set_text(box.control.text().substr(0, 3)); };
    type_text(box.widget, "abcd");
    EXPECT_EQ(box.widget.text(), "abc");
    box.widget.setCursorPosition(1);
    box.control.set_text("xyz");
    EXPECT_EQ(box.widget.cursorPosition(), 1);
    press_key(box.widget, Qt::Key_Return, "\r");
    EXPECT_EQ(entered, 1);
    box.control.selects_all_on_focus = true;
    QFocusEvent focus(QEvent::FocusIn, Qt::MouseFocusReason);
    QCoreApplication::sendEvent(&box.widget, &focus);
    QCoreApplication::processEvents();
    EXPECT_EQ(box.widget.selectedText(), "xyz");
}

class List_binding_test : public ::testing::Test, public Bound<List_box, QListWidget> {
  protected:
    List_binding_test() : Bound("lst") {
        control.set_items({"zero", "one", "two"});
        control.on_mouse_down = [this] { log += std::to_string(control.selected()); };
        control.on_double_click = [this] { log += "!"; };
        widget.show();
    }
    void press_row(int row) {
        const QPointF place = widget.visualItemRect(widget.item(row)).center();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, place, widget.viewport()->mapToGlobal(place), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(widget.viewport(), &event);
        }
    }
    std::string log;
};

TEST_F(List_binding_test, every_press_is_one_choice_and_keys_choose_too) {
    press_row(0);
    press_row(0);
    press_row(2);
    EXPECT_EQ(control.selected_text(), "two");
    press_key(widget, Qt::Key_Up);
    press_key(widget, Qt::Key_Return);
    EXPECT_EQ(log, "0021!");
    press_row(1);
    EXPECT_EQ(log, "0021!1");
}

TEST_F(List_binding_test, code_selects_without_a_handler_and_a_handler_may_change_the_items) {
    control.select(2);
    EXPECT_EQ(widget.currentRow(), 2);
    control.select(-1);
    EXPECT_TRUE(widget.selectedItems().isEmpty());
    control.add("three");
    control.select(3);
    EXPECT_EQ(widget.selectedItems().first()->text(), "three");
    EXPECT_EQ(log, "");
    control.on_mouse_down = [this] { log += "x", control.select(3); };  // does not let go
    press_key(widget, Qt::Key_Up);
    QCoreApplication::processEvents();
    EXPECT_EQ(log, "x");
    EXPECT_EQ(widget.selectedItems().first()->text(), "three");
    control.on_mouse_down = [this] { control.set_items({"new"}); };
    press_row(2);
    EXPECT_EQ(widget.count(), 1);
    EXPECT_TRUE(widget.selectedItems().isEmpty());
}

/// A widget as a screen reader, a dictation program or an on-screen keyboard has it.
QAccessibleInterface& accessible(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
}

void toggle(QAccessibleInterface& element) {
    element.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
}

TEST(Assistive_test, fields_take_texts_as_from_the_keyboard) {
    Bound_text box("txt");
    auto& field = accessible(box.widget);
    const std::pair<std::function<void()>, std::string> steps[] = {
        {[&] { field.setText(QAccessible::Value, "abc"); }, "abc"},
        {[&] { field.editableTextInterface()->insertText(3, "de"); }, "abcde"},
        {[&] { field.editableTextInterface()->replaceText(0, 2, "x\n"); }, "xcde"},
        {[&] { field.editableTextInterface()->deleteText(1, 3); }, "xe"},
        {[&] { box.control.set_enabled(false), field.setText(QAccessible::Value, "no"); }, "xe"},
    };
    int changes = 0;
    box.control.on_change = [&] { ++changes; };
    for (const auto& [step, text] : steps) {
        step();
        EXPECT_EQ(box.control.text(), text);
        EXPECT_EQ(box.widget.text().toStdString(), text);
    }
    EXPECT_EQ(changes, 4);
}

TEST(Assistive_test, boxes_options_and_sliders_follow) {
    Bound<Check_box, QCheckBox> box("chk", "Check");
    for (const int value : {1, 0, 1}) {
        toggle(accessible(box.widget));
        EXPECT_EQ(box.control.value(), value);
    }
    box.control.set_value(2);
    toggle(accessible(box.widget));
    EXPECT_EQ(box.widget.checkState(), Qt::Checked);

    Option_button options[] = {Option_button("a", "A"), Option_button("b", "B")};
    options[0].join(options[1]);
    QWidget group;
    QRadioButton buttons[] = {QRadioButton(&group), QRadioButton(&group)};
    for (const int i : {0, 1}) {
        bind(options[i], buttons[i]);
    }
    for (const int i : {1, 0, 0}) {
        toggle(accessible(buttons[i]));
        EXPECT_TRUE(options[i].value() && !options[1 - i].value());
        EXPECT_TRUE(buttons[i].isChecked() && !buttons[1 - i].isChecked());
    }

    Bound<Scroll_bar, QSlider> slider("bar", 1, 8);
    accessible(slider.widget).valueInterface()->setCurrentValue(5);
    EXPECT_EQ(slider.control.value(), 5);
    slider.control.set_enabled(false);
    accessible(slider.widget).valueInterface()->setCurrentValue(6);
    EXPECT_EQ(slider.control.value() * 10 + slider.widget.value(), 55);
}

TEST(Bindings_test, names_longer_than_a_window_are_shortened_or_broken) {
    const QString name(100, 'x');
    Button recent("recent");
    QAction item;
    bind(recent, item);
    for (const QString& path : {"/nc/A && B/" + name, QString("/nc/A.NC"), "/nc/" + name}) {
        recent.set_caption(path.toStdString());
        EXPECT_LT(item.text().size(), 90);
        EXPECT_EQ(item.toolTip().contains("x</p>"), path.size() > 90);
    }
    EXPECT_EQ(with_long_words_broken("File /nc/" + name.left(66) + "/B does"),
              "File /nc/\n" + name.left(66) + "/B does");
    EXPECT_EQ(with_long_words_broken(name.left(70) + "\n" + name.left(71)),
              name.left(70) + "\n" + name.left(70) + "\nx");
}

TEST(Assistive_test, tool_tips_take_nothing_for_markup) {
    for (const char* text : {"A & B <b>.nc", "<i>\n&lt;"}) {
        QTextDocument shown;
        shown.setHtml(tool_tip_of(text));
        EXPECT_EQ(shown.toPlainText(), text);
    }
    EXPECT_TRUE(tool_tip_of("").isEmpty()) << "which shows none";
}

TEST_F(List_binding_test, an_assistive_program_chooses_and_cannot_choose_nothing) {
    auto& list = accessible(widget);
    list.tableInterface()->selectRow(1);
    list.tableInterface()->selectRow(2);
    toggle(*list.child(0));
    EXPECT_EQ(log, "120");
    EXPECT_EQ(widget.currentRow(), 0);
    widget.clearSelection();
    QCoreApplication::processEvents();
    EXPECT_EQ(widget.selectedItems().size(), 1);
    EXPECT_EQ(log, "120");
}

TEST_F(List_binding_test, a_filter_leaves_what_matches_and_what_is_chosen) {
    control.select(0);
    const std::unique_ptr<QLineEdit> filter(filter_of(widget));
    filter->setText("TW");
    EXPECT_FALSE(widget.isRowHidden(0)) << "a button would act on it";
    EXPECT_TRUE(widget.isRowHidden(1) && !widget.isRowHidden(2));
    press_key(*filter, Qt::Key_Down);
    EXPECT_EQ(log, "2");
    EXPECT_TRUE(widget.isRowHidden(0));
    filter->show();
    filter->hide();
    EXPECT_EQ(filter->text(), "") << "the dialog begins anew";
}

TEST(Assistive_test, a_folded_list_takes_a_choice_and_code_makes_none) {
    Bound<List_box, QComboBox> list("lst");
    int choices = 0;
    list.control.on_mouse_down = [&] { ++choices; };
    list.control.set_items({"zero", "one", "two"});
    list.control.select(1);
    EXPECT_EQ(list.widget.currentText(), "one");
    EXPECT_EQ(choices, 0);
    accessible(list.widget).child(0)->tableInterface()->selectRow(2);
    EXPECT_EQ(list.control.selected_text(), "two");
    press_key(list.widget, Qt::Key_Up);
    EXPECT_EQ(list.control.selected_text(), "one");
    EXPECT_EQ(choices, 2);
}

TEST(Bindings_test, enter_presses_the_default_button_from_nowhere_but_the_dialog_itself) {
    Button button("OK_button", "OK"), other("Other_button");
    Text_box text("txt");
    List_box list("lst");
    List_box folded("folded");
    Scroll_bar bar("bar", 1, 8);
    Check_box box("chk");
    Option_button option("opt");
    list.set_items({"zero"});
    std::string log;
    button.on_click = [&] { log += "B"; };
    other.on_click = [&] { log += "O"; };
    text.on_enter = [&] { log += "T"; };
    list.on_double_click = [&] { log += "L"; };
    QDialog dialog;
    auto* default_button = new QPushButton(&dialog);
    auto* field = new QLineEdit(&dialog);
    auto* rows = new QListWidget(&dialog);
    auto* combo = new QComboBox(&dialog);
    auto* slider = new QSlider(&dialog);
    auto* check = new QCheckBox(&dialog);
    auto* radio = new QRadioButton(&dialog);
    bind(box, *check);
    bind(option, *radio);
    bind(button, *default_button);
    bind(text, *field);
    bind(list, *rows);
    bind(folded, *combo);
    bind(bar, *slider);
    default_button->setDefault(true);
    auto* other_button = button_of(other);
    auto* filter = filter_of(*rows);
    dialog.setLayout(column_of({other_button, filter}));
    dialog.show();
    for (QWidget* widget : std::initializer_list<QWidget*>{field, rows, combo, slider, check, radio,
                                                           filter, other_button}) {
        press_key(*widget, Qt::Key_Return);
    }
    EXPECT_EQ(log, "TO");
    list.select(0);
    press_key(*rows, Qt::Key_Enter);
    EXPECT_EQ(log, "TOL");
    press_key(dialog, Qt::Key_Return);
    EXPECT_EQ(log, "TOLB");
}

TEST(Log_view_test, stays_at_the_end_until_the_operator_scrolls_away) {
    Log_text log("Crossed_txt");
    Log_view view(log);
    view.resize(300, 200);
    view.show();
    QScrollBar& bar = *view.verticalScrollBar();
    const auto add = [&](const std::string& line) {
        const int lines = view.blockCount();
        log.add(std::vector<Log_text::Part>(50, {line, Log_text::Side::outgoing}));
        while (view.blockCount() <= lines + 1 || bar.maximum() == 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QCoreApplication::processEvents();
    };
    add("N1");
    add("a line that is wider than the window, so that there is one more scroll bar");
    EXPECT_EQ(bar.value(), bar.maximum());
    view.resize(300, 120);
    QCoreApplication::processEvents();
    EXPECT_EQ(bar.value(), bar.maximum());
    bar.setValue(7);
    add("N2");
    EXPECT_EQ(bar.value(), 7);
    bar.setValue(bar.maximum());
    add("N3");
    EXPECT_EQ(bar.value(), bar.maximum());
    // What is selected stays so while older parts fall off and new ones come.
    QTextCursor selected = view.textCursor();
    selected.setPosition(view.document()->findBlockByNumber(60).position());
    selected.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    view.setTextCursor(selected);
    const QString text = selected.selectedText();
    const int place = selected.selectionStart();
    log.drop_first(7);
    log.add({{"N4", Log_text::Side::outgoing}});
    while (!view.toPlainText().endsWith("N4")) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    EXPECT_EQ(view.textCursor().selectedText().toStdString(), text.toStdString());
    EXPECT_EQ(view.textCursor().selectionStart(), place - 7 * 3);
}

TEST(Bindings_test, labels_show_marks_only_as_access_keys) {
    const struct {
        const char* caption;
        bool plain, buddy;
        const char* shown;
    } cases[] = {{"&Name && port", false, true, "&Name && port"},
                 {"&Name && port", false, false, "Name & port"},
                 {"A & B", true, false, "A & B"},
                 {"A & B", true, true, "A && B"}};
    for (const auto& c : cases) {
        Label control("lbl", c.caption);
        control.plain = c.plain;
        QLineEdit field;
        QLabel widget;
        widget.setBuddy(c.buddy ? &field : nullptr);
        bind(control, widget);
        EXPECT_EQ(widget.text(), c.shown);
    }
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

TEST(Qt_windows_test, a_modal_form_waits_until_hidden_and_the_form_decides_about_closing) {
    Qt_event_loop loop;
    Qt_windows windows(loop);
    Test_form form(windows);
    windows.add(form, make_test_dialog);
    Task_keeper keeper(loop);
    keeper.start(form.show_modal());
    EXPECT_TRUE(form.visible());
    EXPECT_EQ(windows.active_window(), windows.window_of(form));
    form.hide();
    QCoreApplication::processEvents();
    EXPECT_TRUE(keeper.empty() && form.loaded());
    form.show();
    QWidget* window = windows.window_of(form);
    EXPECT_EQ(window->windowTitle(), "Test");
    EXPECT_EQ(window->findChild<QLineEdit*>("field")->accessibleName(), "Field");
    press_key(*window, Qt::Key_Escape);
    EXPECT_TRUE(window->isVisible());
    window->close();
    EXPECT_FALSE(window->isVisible() || form.loaded());
    windows.clear();
}

}  // namespace
}  // namespace kelvane
