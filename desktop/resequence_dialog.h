#pragma once

#include <QDialog>
#include <memory>

#include "resequence/resequence_form.h"

namespace kelvane {

/// The window of the resequence dialog: the options in three groups, and beside them the first
/// lines of the program as they are and as they would become.
std::unique_ptr<QDialog> make_resequence_dialog(resequence_form_lite& form);

}  // namespace kelvane
