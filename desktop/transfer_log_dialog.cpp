#include "desktop/transfer_log_dialog.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include "desktop/dialog_parts.h"
#include "desktop/table_view.h"

namespace kelvane {

namespace {

/// Widths of the columns in digits; what is wider is cut short.
constexpr int column_widths[] = {20, 11, 9, 24, 8, 7, 9, 16, 16};

QTableView* table_of(Table& control) {
    auto* view = new QTableView;
    bind(control, *view);
    const int digit = view->fontMetrics().horizontalAdvance('0');
    int column = 0;
    for (const int width : column_widths) {
        view->setColumnWidth(column++, width * digit);
    }
    view->horizontalHeader()->setResizeContentsPrecision(0);  // by the rows in sight
    view->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    // How it ended is seen without scrolling.
    view->horizontalHeader()->moveSection(static_cast<int>(transfer_result_column), 4);
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().lineSpacing() + 6);
    view->setTextElideMode(Qt::ElideMiddle);
    return view;
}

}  // namespace

std::unique_ptr<QDialog> make_transfer_log_dialog(Transfer_log_form& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* column = new QVBoxLayout(dialog.get());
    auto* filter = field_of(form.Filter_txt, 16, Text_form::name);
    filter->setClearButtonEnabled(true);
    auto* kinds = new QComboBox;
    bind(form.Kind_lst, *kinds);
    auto* count = new QLabel;
    bind(form.count_label, *count);
    auto* top = new QHBoxLayout;
    top->addWidget(label_of(form.Filter_txt, *filter));
    top->addWidget(filter, 1);
    top->addWidget(label_of(form.Kind_lst, *kinds));
    top->addWidget(kinds);
    column->addLayout(top);
    column->addWidget(table_of(form.Transfers_tbl), 1);
    column->addLayout(
        row_of({count, foot_of({button_of(form.Export_button), button_of(form.Close_button)})}));
    dialog->resize(960, 480);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
