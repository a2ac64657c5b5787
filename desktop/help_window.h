#pragma once

#include <QDialog>
#include <memory>

#include "frame/help_form.h"

namespace kelvane {

/// The window of the manual, whose pages are in the program: with links, contents and the way back.
std::unique_ptr<QDialog> make_help_window(Help_form& form);

/// F1 shows the page about the window that has the input, as long as `owner` is there.
void add_help_key(QObject& owner, Help_form& form);

}  // namespace kelvane
