#pragma once

#include <QDialog>
#include <memory>

#include "line/test_line_form.h"

namespace kelvane {

std::unique_ptr<QDialog> make_test_line_dialog(Test_line_form& form);

}  // namespace kelvane
