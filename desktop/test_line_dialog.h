#pragma once

#include <QDialog>
#include <memory>

#include "line/test_line_form.h"

namespace kelvane {

/// The window of "Test line": the line's state and signals, what is sent by hand, and under them
/// what crosses.
std::unique_ptr<QDialog> make_test_line_dialog(Test_line_form& form);

}  // namespace kelvane
