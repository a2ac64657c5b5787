#pragma once

#include <QDialog>
#include <memory>

#include "machines/select_device_form.h"

namespace kelvane {

/// The window of the form; see bindings.h for what that means.
std::unique_ptr<QDialog> make_select_device_dialog(select_device_form_lite& form);

}  // namespace kelvane
