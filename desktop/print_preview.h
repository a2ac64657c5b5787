#pragma once

#include <memory>
#include <vector>

#include "desktop/print_page.h"
#include "desktop/qt_windows.h"

class QPrinter;

namespace kelvane {

/// Shows the pages on the screen until the operator closes the window; from there they can be
/// printed, on `printer` or another one, and the paper can be turned or changed.
Task<> show_print_preview(Qt_windows& windows, std::shared_ptr<QPrinter> printer,
                          std::vector<Print_page> pages, Print_fit fit);

}  // namespace kelvane
