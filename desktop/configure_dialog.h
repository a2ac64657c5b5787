#pragma once

#include <QDialog>
#include <memory>

#include "machines/configure_form.h"

namespace kelvane {

/// The window of the form; see bindings.h for what that means.
std::unique_ptr<QDialog> make_configure_dialog(configure_IO_lite& form);

}  // namespace kelvane
