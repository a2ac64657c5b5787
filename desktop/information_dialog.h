#pragma once

#include <QDialog>
#include <memory>

#include "frame/information.h"

namespace kelvane {

/// The window of the form: a text that can be read, scrolled, selected and copied.
std::unique_ptr<QDialog> make_information_dialog(Thank_you_form_lite& form);

}  // namespace kelvane
