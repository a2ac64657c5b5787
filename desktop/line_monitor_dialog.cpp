#include "desktop/line_monitor_dialog.h"

#include <QComboBox>
#include <QPushButton>

#include "desktop/dialog_parts.h"
#include "desktop/log_view.h"

namespace kelvane {

QVBoxLayout* line_view_of(Line_view& view, int columns, int rows) {
    auto* log = new Log_view(view.Crossed_txt);
    log->setAccessibleName("What crosses the line");
    log->set_least_size(columns, rows);
    auto* label = new QLabel;
    label->setBuddy(log);
    bind(view.log_label, *label);
    auto* forms = new QComboBox;
    bind(view.Form_lst, *forms);
    auto* counts = new QLabel;
    bind(view.crossed_label, *counts);
    auto* column = new QVBoxLayout;
    column->addWidget(label);
    column->addWidget(log, 1);
    column->addLayout(row_of({counts, label_of(view.Form_lst, *forms), forms}));
    return column;
}

std::unique_ptr<QDialog> make_line_monitor_dialog(Line_monitor_form& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* column = new QVBoxLayout(dialog.get());
    column->addLayout(line_view_of(form.view, 60, 12), 1);
    column->addWidget(foot_of({button_of(form.Pause_button), button_of(form.Clear_button),
                               button_of(form.Copy_button), button_of(form.Save_button),
                               button_of(form.Close_button)}));
    dialog->resize(760, 480);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
