#pragma once

#include <QDialog>
#include <memory>

#include "machines/advanced_form.h"

namespace kelvane {

/// The window of the form; see bindings.h for what that means.
std::unique_ptr<QDialog> make_advanced_dialog(Configure_IO_advanced_lite& form);

}  // namespace kelvane
