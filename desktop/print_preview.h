#pragma once

#include <vector>

#include "desktop/print_page.h"

class QPrinter;

namespace kelvane {

/// Shows the pages on the screen until the operator closes the window; from there they can be
/// printed, on `printer` or another one, and the paper can be turned or changed.
void show_print_preview(QPrinter& printer, const std::vector<Print_page>& pages,
                        const Print_fit& fit);

}  // namespace kelvane
