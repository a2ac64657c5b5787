#include "desktop/test_line_dialog.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include "desktop/dialog_parts.h"
#include "desktop/line_monitor_dialog.h"

namespace kelvane {

namespace {

QLabel* text_of(Label& control) {
    auto* label = new QLabel;
    bind(control, *label);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel* lamp_of(Label& control) {
    auto* label = new QLabel;
    bind(control, *label);
    // Nothing moves when it changes.
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance("DSR: not known "));
    return label;
}

QHBoxLayout* line_of(Test_line_form& form) {
    return row_of({text_of(form.state_label), button_of(form.Open_button)});
}

QGroupBox* signals_of(Test_line_form& form) {
    auto* row = new QHBoxLayout;
    for (Label* lamp : {&form.cts_label, &form.dsr_label, &form.dcd_label, &form.ri_label}) {
        row->addWidget(lamp_of(*lamp));
    }
    row->addStretch();
    row->addWidget(check_box_of(form.chk_DTR));
    row->addWidget(check_box_of(form.chk_RTS));
    return group_of("Signals of the machine, and of this computer", row);
}

QGroupBox* sending_of(Test_line_form& form) {
    auto* text = field_of(form.Line_txt, 12);
    auto* column = new QVBoxLayout;
    auto* line = new QHBoxLayout;
    line->addWidget(label_of(form.Line_txt, *text));
    line->addWidget(text, 1);
    for (Button* button : {&form.Send_line_button, &form.DC1_button, &form.DC3_button}) {
        line->addWidget(button_of(*button));
    }
    column->addLayout(line);
    auto* loop = new QHBoxLayout;
    loop->addWidget(button_of(form.Loop_back_button));
    loop->addWidget(text_of(form.loop_back_label), 1);
    column->addLayout(loop);
    return group_of("Send", column);
}

}  // namespace

std::unique_ptr<QDialog> make_test_line_dialog(Test_line_form& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* column = new QVBoxLayout(dialog.get());
    column->addWidget(text_of(form.machine_label));
    column->addLayout(line_of(form));
    column->addWidget(signals_of(form));
    column->addWidget(sending_of(form));
    column->addLayout(line_view_of(form.view, 50, 5), 1);
    column->addWidget(text_of(form.errors_label));
    column->addWidget(foot_of({button_of(form.Clear_button), button_of(form.Close_button)}));
    dialog->resize(700, 560);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
