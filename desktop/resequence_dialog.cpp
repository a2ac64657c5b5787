#include "desktop/resequence_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QVBoxLayout>

#include "desktop/bindings.h"
#include "desktop/qt_text.h"

namespace kelvane {

namespace {

template <typename Layout>
QGroupBox* group(const QString& title, Layout* layout) {
    auto* box = new QGroupBox(title);
    box->setLayout(layout);
    return box;
}

QCheckBox* check_box(Check_box& control) {
    auto* box = new QCheckBox;
    bind(control, *box);
    return box;
}

/// A field as wide as some characters of its font.
QLineEdit* field(Text_box& control, int characters) {
    auto* edit = new QLineEdit;
    bind(control, *edit);
    edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(QString(characters + 2, '0')));
    return edit;
}

void add_field(QGridLayout& grid, Text_box& control, int characters) {
    const int row = grid.rowCount();
    auto* edit = field(control, characters);
    auto* label = new QLabel(to_screen(control.caption()));
    label->setBuddy(edit);
    grid.addWidget(label, row, 0);
    grid.addWidget(edit, row, 1, 1, 2);
}

void add_digits(QGridLayout& grid, resequence_form_lite& form) {
    const int row = grid.rowCount();
    auto* digits = field(form.digits_txt, 2);
    digits->setAccessibleName("number of digits");
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setPageStep(1);
    slider->setAccessibleName("number of digits, slider");
    bind(form.VScroll1, *slider);
    grid.addWidget(check_box(form.chk_leading_zeros), row, 0);
    grid.addWidget(digits, row, 1);
    grid.addWidget(slider, row, 2);
}

void add_added_text(QGridLayout& grid, resequence_form_lite& form) {
    const int row = grid.rowCount();
    auto* edit = field(form.Add_to_txt, 6);
    auto* box = check_box(form.chk_Add_to);
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
    add_field(*grid, form.start_txt, 6);
    add_field(*grid, form.increment_txt, 6);
    add_field(*grid, form.Maximum_txt, 6);
    add_digits(*grid, form);
    add_field(*grid, form.N_character_txt, 6);
    grid->addWidget(check_box(form.chk_add_space), grid->rowCount(), 0, 1, 3);
    add_added_text(*grid, form);
    return group("Numbers", grid);
}

QGroupBox* which_lines(resequence_form_lite& form) {
    auto* column = new QVBoxLayout;
    for (Check_box* control : {&form.Chk_Ns_only, &form.chk_t_codes, &form.chk_IDline,
                               &form.chk_blanks, &form.chk_comments, &form.chk_comments2}) {
        column->addWidget(check_box(*control));
    }
    column->addStretch();
    return group("Which lines", column);
}

QGroupBox* special_controls(resequence_form_lite& form) {
    auto* column = new QVBoxLayout;
    for (Check_box* control : {&form.chk_gotos, &form.Chk_Dynapath, &form.Chk_OsameasN}) {
        column->addWidget(check_box(*control));
    }
    auto* cincinnati = new QVBoxLayout;
    cincinnati->addWidget(check_box(form.Chk_HwithW));
    auto* frame = group({}, cincinnati);
    bind_frame(form.Cincinnati_frame, *frame);
    column->addWidget(frame);
    column->addStretch();
    return group("Special controls", column);
}

QListWidget* add_preview(QGridLayout& grid, List_box& control) {
    const int column = grid.count() == 0 ? 0 : grid.columnCount();
    auto* list = new QListWidget;
    list->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    list->setSelectionMode(QAbstractItemView::NoSelection);
    list->setUniformItemSizes(true);
    list->setMinimumWidth(list->fontMetrics().horizontalAdvance(QString(26, '0')));
    bind(control, *list);
    auto* label = new QLabel(to_screen(control.caption()));
    label->setBuddy(list);
    grid.addWidget(label, 0, column);
    grid.addWidget(list, 1, column);
    return list;
}

/// Lines that belong together stay side by side.
void scroll_together(const QListWidget& one, const QListWidget& other) {
    QObject::connect(one.verticalScrollBar(), &QScrollBar::valueChanged, other.verticalScrollBar(),
                     &QScrollBar::setValue);
    QObject::connect(other.verticalScrollBar(), &QScrollBar::valueChanged, one.verticalScrollBar(),
                     &QScrollBar::setValue);
}

QGroupBox* preview(resequence_form_lite& form) {
    auto* grid = new QGridLayout;
    const auto* before = add_preview(*grid, form.preview_before);
    const auto* after = add_preview(*grid, form.preview_after);
    scroll_together(*before, *after);
    auto* note = new QLabel;
    note->setWordWrap(true);
    bind(form.preview_note, *note);
    // Room for two lines, so that nothing moves when a note comes or goes.
    note->setMinimumHeight(2 * note->fontMetrics().lineSpacing());
    note->setAlignment(Qt::AlignTop);
    grid->addWidget(note, 2, 0, 1, 2);
    return group("Preview", grid);
}

QDialogButtonBox* buttons(resequence_form_lite& form) {
    auto* box = new QDialogButtonBox;
    auto* start = box->addButton(QString(), QDialogButtonBox::ActionRole);
    auto* cancel = box->addButton(QString(), QDialogButtonBox::ActionRole);
    start->setDefault(true);
    bind(form.Resequence_button, *start);
    bind(form.Cancel_button, *cancel);
    return box;
}

}  // namespace

std::unique_ptr<QDialog> make_resequence_dialog(resequence_form_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* grid = new QGridLayout(dialog.get());
    grid->addWidget(numbers(form), 0, 0, 1, 2);
    grid->addWidget(which_lines(form), 1, 0);
    grid->addWidget(special_controls(form), 1, 1);
    grid->addWidget(preview(form), 0, 2, 2, 1);
    grid->addWidget(buttons(form), 2, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(1, 1);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
