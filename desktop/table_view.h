#pragma once

#include "platform/controls.h"

class QTableView;

namespace kelvane {

/// Shows the table's columns and rows; a row is selected as a whole. Texts that are wider than
/// their column have the whole as their tool tip.
void bind(Table& control, QTableView& widget);

}  // namespace kelvane
