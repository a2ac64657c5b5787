#include "desktop/start_dialog.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

#include "desktop/dialog_parts.h"

namespace kelvane {

namespace {

constexpr int column_width = 30;  // characters

QListWidget* wrapped_list_of(List_box& control, int rows) {
    auto* list = list_of(control, rows, column_width);
    list->setWordWrap(true);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    return list;
}

QListWidget* blocks(Start_form& form) {
    auto* list = list_of(form.Blocks_lst, 6, column_width);
    list->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    return list;
}

QPlainTextEdit* lead_in(Start_form& form) {
    auto* text = new QPlainTextEdit;
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setTabChangesFocus(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setMinimumHeight(5 * text->fontMetrics().lineSpacing());
    bind(form.Lead_in_txt, *text);
    return text;
}

QHBoxLayout* place(Start_form& form) {
    auto* row = new QHBoxLayout;
    auto* field = field_of(form.Line_txt, 10);
    row->addWidget(label_of(form.Line_txt, *field));
    row->addWidget(field);
    row->addWidget(hint_of(form.start_hint), 1);
    return row;
}

QGroupBox* machining(Start_form& form) {
    auto* row = new QHBoxLayout;
    row->addWidget(option_of(form.Mill_option, 'm'));
    row->addWidget(option_of(form.Lathe_option, 'a'));
    row->addStretch();
    auto* group = group_of({}, row);
    bind_frame(form.Machining_frame, *group);
    return group;
}

QVBoxLayout* program_side(Start_form& form) {
    auto* side = new QVBoxLayout;
    side->addLayout(labelled(form.Blocks_lst, *blocks(form)), 3);
    side->addLayout(labelled(form.Lead_in_txt, *lead_in(form)), 4);
    return side;
}

QVBoxLayout* control_side(Start_form& form) {
    auto* side = new QVBoxLayout;
    side->addLayout(labelled(form.Warnings_lst, *wrapped_list_of(form.Warnings_lst, 3)), 2);
    side->addWidget(machining(form));
    side->addLayout(labelled(form.State_lst, *wrapped_list_of(form.State_lst, 6)), 5);
    return side;
}

QDialogButtonBox* foot(Start_form& form) {
    auto* send = button_of(form.Send_button, 'S');
    auto* box = foot_of({send, button_of(form.Cancel_button, 'C')});
    send->setDefault(false);  // never in passing
    return box;
}

}  // namespace

std::unique_ptr<QDialog> make_start_dialog(Start_form& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* grid = new QGridLayout(dialog.get());
    auto* program = new QHBoxLayout;
    program->addWidget(hint_of(form.program_label), 1);
    program->addWidget(button_of(form.Program_button));
    grid->addLayout(program, 0, 0, 1, 2);
    grid->addLayout(place(form), 1, 0, 1, 2);
    grid->addLayout(program_side(form), 2, 0);
    grid->addLayout(control_side(form), 2, 1);
    grid->addWidget(foot(form), 3, 0, 1, 2);
    grid->setRowStretch(2, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    constexpr QSize first_size(780, 560);
    dialog->resize(first_size);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
