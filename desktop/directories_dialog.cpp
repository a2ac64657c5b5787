#include "desktop/directories_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "desktop/dialog_parts.h"
#include "desktop/elided_label.h"

namespace kelvane {

namespace {

QGroupBox* directory(directories_form_lite& form) {
    auto* path = new Elided_label;
    bind(form.directory, *path);
    auto* group = group_of({}, row_of({path, button_of(form.Set_directory_button)}));
    bind_frame(form.directory_label, *group);
    return group;
}

void add_field(QGridLayout& grid, const Control& control, QWidget* field) {
    const int row = grid.rowCount();
    grid.addWidget(label_of(control, *field), row, 0);
    grid.addWidget(field, row, 1);
}

QGroupBox* types(directories_form_lite& form) {
    auto* list = list_of(form.Types_lst, 6, 36);
    auto* buttons = column_of(
        {button_of(form.Add_button), button_of(form.Remove_button), button_of(form.Up_button)});
    auto* row = new QHBoxLayout;
    row->addWidget(list, 1);
    row->addLayout(buttons);
    auto* first = new QComboBox;
    bind(form.First_type_lst, *first);
    auto* grid = new QGridLayout;
    grid->addWidget(label_of(form.Types_lst, *list), 0, 0, 1, 2);
    grid->addLayout(row, 1, 0, 1, 2);
    add_field(*grid, form.Description_txt, field_of(form.Description_txt, 24));
    add_field(*grid, form.Pattern_txt, field_of(form.Pattern_txt, 24));
    add_field(*grid, form.First_type_lst, first);
    grid->addWidget(check_box_of(form.chk_add_extension), grid->rowCount(), 0, 1, 2);
    grid->setRowStretch(1, 1);
    return group_of("File dialog", grid);
}

}  // namespace

std::unique_ptr<QDialog> make_directories_dialog(directories_form_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* column = new QVBoxLayout(dialog.get());
    column->addWidget(directory(form));
    column->addWidget(types(form), 1);
    column->addWidget(foot_of({button_of(form.OK_button), button_of(form.Cancel_button)}));
    finish_dialog(*dialog);
    return dialog;
}

std::unique_ptr<QDialog> make_set_directory_dialog(Set_directory_form_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* column = new QVBoxLayout(dialog.get());
    auto* field = field_of(form.Directory_txt, 40, Text_form::name);
    column->addWidget(label_of(form.Directory_txt, *field));
    column->addLayout(row_of({field, button_of(form.Browse_button)}));
    column->addWidget(hint_of(form.directory_hint));
    column->addStretch();
    column->addWidget(foot_of({button_of(form.OK_button), button_of(form.Cancel_button)}));
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
