#include "desktop/find_bars.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "desktop/bindings.h"
#include "desktop/event_filter.h"
#include "editing/find_bar.h"

namespace kelvane {

namespace {

QLineEdit* add_field(Text_box& control, QGridLayout& layout, int row, int column) {
    auto* field = new QLineEdit;
    auto* label = new QLabel(to_screen(control.caption()));
    label->setBuddy(field);
    bind(control, *field, Text_form::name);
    field->setAccessibleName(without_access_key(label->text()));
    layout.addWidget(label, row, column);
    layout.addWidget(field, row, column + 1);
    return field;
}

QPushButton* add_button(Button& control, QGridLayout& layout, int row, int column) {
    auto* button = new QPushButton;
    bind(control, *button);
    layout.addWidget(button, row, column);
    return button;
}

QCheckBox* add_box(Check_box& control, QGridLayout& layout, int row, int column) {
    auto* box = new QCheckBox;
    bind(control, *box);
    layout.addWidget(box, row, column);
    return box;
}

/// Of a bar, whose column `wide` takes the room that is left.
QGridLayout* make_layout(int space_above, int wide) {
    auto* layout = new QGridLayout(new QWidget);
    layout->setContentsMargins(4, space_above, 4, 2);
    layout->setColumnStretch(wide, 1);
    return layout;
}

QWidget* make_find_frame(Find_bar& bar) {
    QGridLayout* layout = make_layout(2, 1);
    // Tab goes in this order: from one text to the other at once.
    add_field(bar.find_text, *layout, 0, 0);
    add_field(bar.replace_text, *layout, 1, 0);
    add_button(bar.next_button, *layout, 0, 2);
    add_button(bar.previous_button, *layout, 0, 3);
    add_button(bar.replace_button, *layout, 1, 2);
    add_button(bar.replace_all_button, *layout, 1, 3);
    add_box(bar.match_case, *layout, 0, 4);
    add_box(bar.whole_word, *layout, 1, 4);
    bind_frame(bar.find_frame, *layout->parentWidget());
    return layout->parentWidget();
}

QWidget* make_go_to_frame(Find_bar& bar) {
    QGridLayout* layout = make_layout(2, 1);
    add_field(bar.go_to_text, *layout, 0, 0);
    add_button(bar.go_to_button, *layout, 0, 2);
    bind_frame(bar.go_to_frame, *layout->parentWidget());
    return layout->parentWidget();
}

/// What has come of a search, and the button that stops a long one.
QWidget* make_result_row(Find_bar& bar) {
    QGridLayout* layout = make_layout(0, 0);
    auto* result = new QLabel;
    bind(bar.result, *result);
    layout->addWidget(result, 0, 0);
    add_button(bar.stop_button, *layout, 0, 1);
    return layout->parentWidget();
}

}  // namespace

QWidget* make_find_bars(Find_bar& bar, QWidget& pane) {
    auto* all = new QWidget;
    auto* layout = new QVBoxLayout(all);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(make_find_frame(bar));
    layout->addWidget(make_go_to_frame(bar));
    layout->addWidget(make_result_row(bar));
    all->setVisible(false);
    bar.on_focus = [all, &pane](const Control* control) {
        all->setVisible(control != nullptr);
        QWidget* field =
            control == nullptr ? &pane : all->findChild<QWidget*>(to_screen(control->name()));
        field->setFocus(Qt::ShortcutFocusReason);
        if (auto* const line = qobject_cast<QLineEdit*>(field)) {
            line->selectAll();  // it may have had the focus before
        }
    };
    Event_filter::install(*all, [all, &bar](QEvent& event) {
        if (event.type() != QEvent::KeyPress) {
            return false;
        }
        const int key = static_cast<const QKeyEvent&>(event).key();
        auto* const button = qobject_cast<QPushButton*>(all->focusWidget());
        if (key == Qt::Key_Escape) {
            bar.close();
        } else if (button != nullptr && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
            button->click();
        } else {
            return false;
        }
        return true;
    });
    return all;
}

}  // namespace kelvane
