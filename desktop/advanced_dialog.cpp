#include "desktop/advanced_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

#include "desktop/dialog_parts.h"

namespace kelvane {

namespace {

constexpr int text_width = 10;

/// A label and its field, with the unit behind it.
void add_field(QGridLayout& grid, Text_box& control, char key, const QString& unit = {}) {
    const int row = grid.rowCount();
    auto* field = field_of(control, unit.isEmpty() ? text_width : number_width);
    grid.addWidget(label_of(control, *field, key), row, 0);
    if (unit.isEmpty()) {
        grid.addWidget(field, row, 1, 1, 2);
    } else {
        grid.addWidget(field, row, 1);
        grid.addWidget(new QLabel(unit), row, 2);
    }
}

void add_whole_row(QGridLayout& grid, QWidget* widget) {
    grid.addWidget(widget, grid.rowCount(), 0, 1, 3);
}

QGroupBox* sending(Configure_IO_advanced_lite& form) {
    auto* grid = new QGridLayout;
    add_field(*grid, form.leader_txt, 'L');
    add_field(*grid, form.Trailer_txt, 'T');
    add_whole_row(*grid, check_box_of(form.chk_manreads, 'n'));
    add_field(*grid, form.Character_delay_txt, 'c', "ms.");
    add_field(*grid, form.Block_delay_txt, 'b', "ms.");
    add_field(*grid, form.HS_loop_txt, 'h', "  characters");
    add_whole_row(*grid, hint_of(form.HS_loop_hint));
    add_field(*grid, form.Mask_txt, 'M');
    add_field(*grid, form.skipit_txt, 'k');
    add_field(*grid, form.Skip_lines_txt, 'o');
    add_whole_row(*grid, check_box_of(form.Chk_delete_blank_lines, 'D'));
    add_whole_row(*grid, check_box_of(form.chk_TV_parity, 'v'));
    add_field(*grid, form.Switchbox_txt, 'w');
    grid->setRowStretch(grid->rowCount(), 1);
    grid->setColumnStretch(2, 1);
    return group_of("When sending ...", grid);
}

void add_timeout(QGridLayout& grid, Configure_IO_advanced_lite& form) {
    const int row = grid.rowCount();
    auto* field = field_of(form.Timeout_txt, number_width);
    field->setAccessibleName(without_access_key(to_screen(form.Timeout_txt.caption())).remove(':'));
    grid.addWidget(check_box_of(form.Chk_RX_until_timeout, 'i'), row, 0);
    grid.addWidget(field, row, 1);
    grid.addWidget(new QLabel("sec"), row, 2);
}

QGroupBox* receiving(Configure_IO_advanced_lite& form) {
    auto* grid = new QGridLayout;
    add_timeout(*grid, form);
    add_whole_row(*grid, check_box_of(form.Chk_RX_until_aborted, 'a'));
    add_whole_row(*grid, check_box_of(form.Chk_Separate_files, 'S'));
    add_whole_row(*grid, check_box_of(form.chk_auto_code_recognition, 'e'));
    add_whole_row(*grid, check_box_of(form.chk_ignore_before, 'f'));
    add_whole_row(*grid, check_box_of(form.chk_ignore_after, 'g'));
    add_field(*grid, form.skip_upto_txt, 'p');
    add_field(*grid, form.Input_mask_txt, 'u');
    grid->setRowStretch(grid->rowCount(), 1);
    grid->setColumnStretch(2, 1);
    return group_of("When receiving ....", grid);
}

}  // namespace

std::unique_ptr<QDialog> make_advanced_dialog(Configure_IO_advanced_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* grid = new QGridLayout(dialog.get());
    grid->addWidget(sending(form), 0, 0);
    grid->addWidget(receiving(form), 0, 1);
    grid->addWidget(foot_of({button_of(form.OK_button)}), 1, 0, 1, 2);
    grid->setRowStretch(0, 1);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
