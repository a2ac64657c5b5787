#pragma once

#include "frame/main_window.h"
#include "platform/fault.h"
#include "transmit/sender.h"

namespace kelvane {

/// Beeps, so that the operator hears that a transfer is starting, and sends the selected machine's
/// switchbox select codes, if it has any, in `code`. A file that cannot be read is told
/// and ends the transfer. Faults are those of the notation.
[[nodiscard]] Fault_or_ok Send_switchbox_codes(Kelvane_lite_form& window, Text_sender& sender,
                                               Tape_code code);

}  // namespace kelvane
