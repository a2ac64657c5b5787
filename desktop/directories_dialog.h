#pragma once

#include <QDialog>
#include <memory>

#include "frame/directories_form.h"

namespace kelvane {

/// The windows of the forms; see bindings.h for what that means.
std::unique_ptr<QDialog> make_directories_dialog(directories_form_lite& form);
std::unique_ptr<QDialog> make_set_directory_dialog(Set_directory_form_lite& form);

}  // namespace kelvane
