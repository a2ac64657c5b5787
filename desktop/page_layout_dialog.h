#pragma once

#include <QDialog>
#include <memory>

#include "print/page_layout_form.h"

namespace kelvane {

/// The window of the page layout dialog: the values in groups, and beside them page 1 in small.
std::unique_ptr<QDialog> make_page_layout_dialog(Page_layout_form_lite& form);

}  // namespace kelvane
