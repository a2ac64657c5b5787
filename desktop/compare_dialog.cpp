#include "desktop/compare_dialog.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QListWidget>
#include <QPushButton>
#include <QStyledItemDelegate>

#include "desktop/dialog_parts.h"

namespace kelvane {

namespace {

/// Gives rows that differ a ground of their own, between those of the text and of what is selected.
class Difference_ground : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (option->text.startsWith(QLatin1Char(Compare_form::differs_mark))) {
            QColor ground = option->palette.color(QPalette::Highlight);
            constexpr int faint = 60;  // of 255
            ground.setAlpha(faint);
            option->backgroundBrush = ground;
        }
    }
};

QListWidget* rows_of(List_box& control) {
    auto* list = list_of(control, 8, 30);
    list->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    list->setUniformItemSizes(true);
    list->setItemDelegate(new Difference_ground(list));
    return list;
}

QListWidget* add_side(QGridLayout& grid, int column, Button& button, Label& path, List_box& rows) {
    auto* list = rows_of(rows);
    list->setAccessibleName(to_screen(rows.caption()));
    grid.addWidget(button_of(button), 0, column);
    grid.addWidget(hint_of(path), 1, column);
    grid.addWidget(list, 2, column);
    grid.setColumnStretch(column, 1);
    return list;
}

}  // namespace

std::unique_ptr<QDialog> make_compare_dialog(Compare_form& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* grid = new QGridLayout(dialog.get());
    const auto* left = add_side(*grid, 0, form.Left_button, form.left_label, form.Left_lst);
    const auto* right = add_side(*grid, 1, form.Right_button, form.right_label, form.Right_lst);
    grid->addWidget(hint_of(form.count_label), 3, 0);
    grid->addLayout(row_of({check_box_of(form.chk_ignore_numbers),
                            check_box_of(form.chk_ignore_blanks), button_of(form.Received_button)}),
                    3, 1);
    grid->addWidget(foot_of({button_of(form.Next_button), button_of(form.Previous_button),
                             button_of(form.Close_button, 'C')}),
                    4, 0, 1, 2);
    grid->setRowStretch(2, 1);
    scroll_together(*left, *right);
    constexpr QSize first_size(780, 540);
    dialog->resize(first_size);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
