#pragma once

#include <QDialog>
#include <memory>

#include "frame/compare_form.h"

namespace kelvane {

/// The window of "Compare": two lists that scroll together.
std::unique_ptr<QDialog> make_compare_dialog(Compare_form& form);

}  // namespace kelvane
