#pragma once

#include <QDialog>
#include <memory>

#include "frame/transfer_log_form.h"

namespace kelvane {

std::unique_ptr<QDialog> make_transfer_log_dialog(Transfer_log_form& form);

}  // namespace kelvane
