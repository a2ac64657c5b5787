#pragma once

#include "frame/main_window.h"
#include "transmit/sender.h"

namespace kelvane {

/// Sends `binaryfilename` byte for byte, flow control before every byte. Ends at the end of the
/// file, on `escape`, when the port has gone, or, without Xon/Xoff (where nothing can be paused),
/// on the first press of Stop. False, with nothing sent, when the file cannot be read.
[[nodiscard]] bool Sendit_Binary(Kelvane_lite_form& window, Text_sender& sender);

}  // namespace kelvane
