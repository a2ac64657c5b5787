#pragma once

#include <QDialog>
#include <memory>

#include "frame/transfer_log_form.h"

namespace kelvane {

/// The window of "Transfer log": the table with its filter.
std::unique_ptr<QDialog> make_transfer_log_dialog(Transfer_log_form& form);

}  // namespace kelvane
