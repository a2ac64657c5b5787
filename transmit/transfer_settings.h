#pragma once

#include <string>

#include "frame/main_window.h"
#include "platform/fault.h"
#include "platform/serial_port.h"

namespace kelvane {

/// What a transfer needs of the machine's record beside the shared state.
struct Transfer_settings {
    std::string leader;  ///< characters, notation decoded
    std::string trailer;
    bool readable_leader = false;  ///< a leader that can be read on the tape
    int com_port = 1;
    std::string baud;       ///< empty: the record names no rate
    std::string stop_bits;  ///< "2", "1.5" or "1"
    bool eight_data_bits = false;
    Handshake handshake = Handshake::none;
    int timeout_s = 3;  ///< end of a receive: seconds of silence, 1..65
};

/// Clears what the last transfer has left in the shared state.
void clear_transfer_state(Shared_state& state);

/// Reads the selected machine's settings file into the shared state and `settings`. A file that is
/// missing or too short is told in a warning box, and what was read, over the default port
/// settings, is used. One that is there and cannot be read ends the transfer. Texts that cannot be
/// decoded are a fault.
[[nodiscard]] Fault_or_ok load_transfer_settings(Kelvane_lite_form& window,
                                                 Transfer_settings& settings);

/// The port's settings string: "9600,N,8,1". With 7 data bits the parity bit comes from the code
/// table, so the line runs 8 bits without parity.
[[nodiscard]] std::string port_settings_text(const Transfer_settings& settings,
                                             Tape_code tape_code);

}  // namespace kelvane
