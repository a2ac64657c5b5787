#pragma once

#include <QDialog>
#include <memory>

#include "line/line_monitor_form.h"

class QVBoxLayout;

namespace kelvane {

/// The window of "Line monitor": the view with its buttons.
std::unique_ptr<QDialog> make_line_monitor_dialog(Line_monitor_form& form);

/// The view with its label, counts and list of forms, at least `columns` by `rows` characters, for
/// a window that looks into the line.
QVBoxLayout* line_view_of(Line_view& view, int columns, int rows);

}  // namespace kelvane
