#include "desktop/select_device_dialog.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "desktop/dialog_parts.h"

namespace kelvane {

std::unique_ptr<QDialog> make_select_device_dialog(select_device_form_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* column = new QVBoxLayout(dialog.get());
    auto* list = list_of(form.IO_device_lst, 8, 30);
    column->addWidget(label_of(form.Label1, *list, 'm'));
    column->addWidget(filter_of(*list));
    column->addWidget(list, 1);
    column->addWidget(foot_of({button_of(form.Command1, 'S'), button_of(form.Command2, 'C')}));
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
