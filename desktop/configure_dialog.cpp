#include "desktop/configure_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include "desktop/dialog_parts.h"

namespace kelvane {

namespace {

QGroupBox* machines(configure_IO_lite& form) {
    auto* list = list_of(form.IO_device_lst, 6, 9);
    auto* name = field_of(form.New_name_txt, 5, Text_form::name);
    name->setAccessibleName("Add to list");
    auto* add = new QHBoxLayout;
    add->addWidget(button_of(form.Command2, 'l'));
    add->addWidget(name, 1);
    auto* remove = button_of(form.Command3, 'D');
    auto* column = new QVBoxLayout;
    column->addLayout(row_of({label_of(form.IO_device_lst, *list, 'M'), remove}));
    column->addWidget(filter_of(*list));
    column->addWidget(list, 1);
    column->addLayout(add);
    column->addWidget(hint_of(form.name_hint));
    auto* group = group_of("", column);
    QWidget::setTabOrder(list, remove);  // the dialog does not begin with Delete
    return group;
}

QGroupBox* line(configure_IO_lite& form) {
    auto* seven = option_of(form.Opt_7_bits);
    auto* bits = new QVBoxLayout;
    bits->addLayout(labelled(form.stopbits_lst, *list_of(form.stopbits_lst, 3, 1), 'S'), 1);
    bits->addWidget(label_of(form.data_bits_label, *seven, 'i'));
    bits->addWidget(seven);
    bits->addWidget(option_of(form.Opt_8_bits));
    auto* row = new QHBoxLayout;
    row->addLayout(labelled(form.COM_lst, *list_of(form.COM_lst, 4, 2), 'O'), 1);
    row->addLayout(labelled(form.BAUD_lst, *list_of(form.BAUD_lst, 4, 4), 'B'), 1);
    row->addLayout(bits);
    return group_of("", row);
}

QGroupBox* device(configure_IO_lite& form) {
    auto* grid = new QGridLayout;
    auto* field = field_of(form.wiring.Device_txt, 12, Text_form::name);
    auto* list = list_of(form.wiring.Device_lst, 2, 12);
    grid->addWidget(label_of(form.wiring.Device_txt, *field), 0, 0);
    grid->addWidget(field, 0, 1);
    grid->addLayout(row_of({label_of(form.wiring.Device_lst, *list),
                            button_of(form.wiring.lasting_button, 'K')}),
                    1, 0, 1, 2);
    grid->addWidget(list, 2, 0, 1, 2);
    grid->addWidget(hint_of(form.wiring.device_hint), 3, 0, 1, 2);
    grid->setRowStretch(2, 1);
    return group_of("Serial device of this COM number", grid);
}

QGroupBox* code(configure_IO_lite& form) {
    return group_of("&Code", column_of({check_box_of(form.chk_even), check_box_of(form.chk_odd),
                                        check_box_of(form.chk_no), check_box_of(form.chk_EIA)}));
}

QGroupBox* handshaking(configure_IO_lite& form) {
    return group_of("&Handshaking",
                    column_of({check_box_of(form.chk_none), check_box_of(form.chk_Xon),
                               check_box_of(form.chk_RTS), check_box_of(form.chk_both)}));
}

/// In two columns, as the frames above it stand.
QGroupBox* end_of_block(configure_IO_lite& form) {
    auto* custom = field_of(form.Custom_EOB_txt, 3);
    custom->setAccessibleName("Custom");
    auto* grid = new QGridLayout;
    grid->addWidget(check_box_of(form.chk_LF), 0, 0);
    grid->addWidget(check_box_of(form.chk_CR), 0, 1);
    grid->addWidget(check_box_of(form.chk_LFCR), 1, 0);
    grid->addWidget(check_box_of(form.chk_CRLF), 1, 1);
    grid->addWidget(check_box_of(form.Chk_custom_EOB), 2, 0);
    grid->addWidget(custom, 2, 1);
    grid->setRowStretch(3, 1);
    return group_of("&End of block", grid);
}

}  // namespace

// Machines | line and device | code, handshake, end of block.
std::unique_ptr<QDialog> make_configure_dialog(configure_IO_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* grid = new QGridLayout(dialog.get());
    auto* foot = foot_of({button_of(form.apply_button, 'A'), button_of(form.cancel_button, 'n')},
                         button_of(form.Advanced_button, 'v'));
    grid->addWidget(machines(form), 0, 0, 2, 1);
    grid->addWidget(line(form), 0, 1);
    grid->addWidget(device(form), 1, 1);
    grid->addWidget(code(form), 0, 2);
    grid->addWidget(handshaking(form), 0, 3);
    grid->addWidget(end_of_block(form), 1, 2, 1, 2);
    grid->addWidget(foot, 2, 0, 1, 4);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 3);
    grid->setRowStretch(1, 1);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
