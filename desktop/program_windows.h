#pragma once

#include "desktop/qt_windows.h"
#include "frame/program.h"

namespace kelvane {

/// Says how the windows of all forms of the program are built; the main window comes first.
void add_windows(Qt_windows& windows, Program& program);

}  // namespace kelvane
