#pragma once

#include <QDialog>
#include <memory>

#include "frame/start_form.h"

namespace kelvane {

/// The window of "Send from a block": the program around the line on the left with what is sent
/// before it, warnings and the control's memory on the right.
std::unique_ptr<QDialog> make_start_dialog(Start_form& form);

}  // namespace kelvane
