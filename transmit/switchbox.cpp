#include "transmit/switchbox.h"

#include "machines/machine_files.h"
#include "transmit/notation.h"

namespace kelvane {

Fault_or_ok Send_switchbox_codes(Kelvane_lite_form& window, Text_sender& sender, Tape_code code) {
    window.platform.desktop.beep();
    const auto line = read_switchbox_text(window.platform.files, window.state.IO_device_name);
    if (!line) {
        // Without its codes the program would go to the machine that the box stands at.
        window.box("Unable to read the switchbox select codes\n" + line.reason(),
                   Message_icon::exclamation, Message_buttons::ok, "File read error");
        window.state.escape = 1;
        return std::nullopt;
    }
    if (line->empty()) {
        return std::nullopt;
    }
    std::string codes;
    if (const Fault_or_ok fault = parsit(*line, code, codes)) {
        return fault;
    }
    sender.sendit2(codes, code);
    return std::nullopt;
}

}  // namespace kelvane
