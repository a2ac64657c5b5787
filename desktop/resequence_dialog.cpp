#include "desktop/resequence_dialog.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>

#include "desktop/dialog_parts.h"

namespace kelvane {

namespace {

void add_number(QGridLayout& grid, Text_box& control, char key) {
    const int row = grid.rowCount();
    auto* edit = field_of(control, number_width);
    grid.addWidget(label_of(control, *edit, key), row, 0);
    grid.addWidget(edit, row, 1, 1, 2);
}

void add_digits(QGridLayout& grid, resequence_form_lite& form) {
    const int row = grid.rowCount();
    auto* digits = field_of(form.digits_txt, 2);
    digits->setAccessibleName("number of digits");
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setPageStep(1);
    slider->setAccessibleName("number of digits, slider");
    bind(form.VScroll1, *slider);
    grid.addWidget(check_box_of(form.chk_leading_zeros, 'l'), row, 0);
    grid.addWidget(digits, row, 1);
    grid.addWidget(slider, row, 2);
}

void add_added_text(QGridLayout& grid, resequence_form_lite& form) {
    const int row = grid.rowCount();
    auto* edit = field_of(form.Add_to_txt, number_width);
    auto* box = check_box_of(form.chk_Add_to, 'A');
    box->setAccessibleName("Add to every line");
    edit->setAccessibleName("text added to every line");
    auto* label = new QLabel;
    bind(form.Add_to_label, *label);
    grid.addWidget(box, row, 0);
    grid.addWidget(edit, row, 1);
    grid.addWidget(label, row, 2);
}

QGroupBox* numbers(resequence_form_lite& form) {
    auto* grid = new QGridLayout;
    add_number(*grid, form.start_txt, 'S');
    add_number(*grid, form.increment_txt, 'I');
    add_number(*grid, form.Maximum_txt, 'M');
    add_digits(*grid, form);
    add_number(*grid, form.N_character_txt, 'C');
    grid->addWidget(check_box_of(form.chk_add_space, 'e'), grid->rowCount(), 0, 1, 3);
    add_added_text(*grid, form);
    return group_of("Numbers", grid);
}

QGroupBox* which_lines(resequence_form_lite& form) {
    return group_of(
        "Which lines",
        column_of({check_box_of(form.Chk_Ns_only, 'O'), check_box_of(form.chk_t_codes, 'T'),
                   check_box_of(form.chk_IDline, 'p'), check_box_of(form.chk_blanks, 'b'),
                   check_box_of(form.chk_comments, 'w'), check_box_of(form.chk_comments2, 'h')}));
}

QGroupBox* special_controls(resequence_form_lite& form) {
    auto* cincinnati = group_of({}, column_of({check_box_of(form.Chk_HwithW, 'U')}));
    bind_frame(form.Cincinnati_frame, *cincinnati);
    return group_of(
        "Special controls",
        column_of({check_box_of(form.chk_gotos, 'F'), check_box_of(form.Chk_Dynapath, 'D'),
                   check_box_of(form.Chk_OsameasN, 'k'), cincinnati}));
}

QListWidget* add_preview(QGridLayout& grid, List_box& control) {
    const int column = grid.count() == 0 ? 0 : grid.columnCount();
    auto* list = new QListWidget;
    list->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    list->setSelectionMode(QAbstractItemView::NoSelection);
    list->setUniformItemSizes(true);
    list->setMinimumWidth(list->fontMetrics().horizontalAdvance(QString(10, '0')));
    bind(control, *list);
    grid.addWidget(label_of(control, *list), 0, column);
    grid.addWidget(list, 1, column);
    return list;
}

QGroupBox* preview(resequence_form_lite& form) {
    auto* grid = new QGridLayout;
    const auto* before = add_preview(*grid, form.preview_before);
    const auto* after = add_preview(*grid, form.preview_after);
    scroll_together(*before, *after);
    auto* note = new QLabel;
    note->setWordWrap(true);
    bind(form.preview_note, *note);
    // Room for some notes, so that nothing moves when one comes or goes.
    constexpr int lines = 4;
    note->setMinimumHeight(lines * note->fontMetrics().lineSpacing());
    note->setAlignment(Qt::AlignTop);
    grid->addWidget(note, 2, 0, 1, 2);
    return group_of("Preview", grid);
}

}  // namespace

std::unique_ptr<QDialog> make_resequence_dialog(resequence_form_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* grid = new QGridLayout(dialog.get());
    grid->addWidget(numbers(form), 0, 0, 1, 2);
    grid->addWidget(which_lines(form), 1, 0);
    grid->addWidget(special_controls(form), 1, 1);
    grid->addWidget(preview(form), 0, 2, 2, 1);
    grid->addWidget(
        foot_of({button_of(form.Resequence_button, 'R'), button_of(form.Cancel_button, 'n')}), 2, 0,
        1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(1, 1);
    constexpr QSize roomy(880, 480);
    dialog->resize(roomy);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
