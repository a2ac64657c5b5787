#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/serial_port.h"

namespace kelvane {

/// Speed and frame of a line.
struct Line_settings {
    int baud = 0;
    char parity = 'N';  ///< N, E, O, M (mark) or S (space)
    int data_bits = 8;  ///< 5..8
    int stop_bits = 1;  ///< 1 or 2; 1.5 is 2, which every receiver of 1.5 takes

    /// Start bit, data, parity and stop bits.
    [[nodiscard]] int bits_per_character() const;
};

/// Takes "9600,N,8,1" apart. No value for anything else.
std::optional<Line_settings> parse_line_settings(std::string_view text);

// What Qt's port cannot do, on the handle of an open serial device.

/// Whether the line is still there, and whether bytes wait on it.
struct Line_look {
    bool gone = false;  ///< pulled out or hung up
    bool input = false;
};
Line_look look_at_line(int handle);

/// Bytes that the driver counts as not sent. No value when the line is gone.
std::optional<std::size_t> driver_queue(int handle);

/// Lets the driver hold the machine back and obey it, with the machine's own two characters. Any
/// other character than Xon does not resume output.
void set_driver_handshaking(int handle, const Port_settings& settings);

/// RTS and DTR on or off; nothing happens on a device without modem lines.
void set_modem_lines(int handle, bool on);

/// One of the two.
void set_modem_line(int handle, Own_signal signal, bool on);

/// The lines that the machine drives. No value on a device without modem lines.
std::optional<Machine_signals> modem_signals(int handle);

/// CTS; a device without modem lines is clear to send.
bool clear_to_send(int handle);

/// What a driver counts on a line, since the computer was started.
struct Driver_counts {
    int cts_changes = 0;
    Line_errors errors;
};
/// No value where the driver counts nothing.
std::optional<Driver_counts> driver_counts(int handle);

/// Whether the last bit has left the chip. No value where the driver cannot tell.
std::optional<bool> transmitter_empty(int handle);

/// USB adapters hand received bytes on only every 16 ms unless this is asked for. A device that
/// knows no such thing refuses, which does no harm.
void ask_for_low_latency(int handle);

/// Folder in which the system lists its serial devices.
inline constexpr const char* serial_classes = "/sys/class/tty";

/// A chip holds back what comes until its buffer has filled up to a trigger, or until the line has
/// been silent for four characters: a lone Xoff comes that much later. Sets the trigger of the
/// device's chip to one byte where that may be done. The trigger that holds now; no value for a
/// device without one.
std::optional<int> set_receive_trigger(const std::string& device,
                                       const std::string& classes = serial_classes);

/// Characters by which a lone Xoff is seen late on a device whose trigger is higher than a byte and
/// may not be set; 0 on all others.
int xoff_delay(const std::string& device, const std::string& classes = serial_classes);

/// The driver counts every change of CTS, whatever the settings of the line.
bool counts_cts_changes(const std::string& device, const std::string& classes = serial_classes);

/// What keeps a device from being opened, told apart by a look at it; for the operator, what may
/// help included. `refused` is true when the opening failed for want of a right or a lock;
/// `system_text` is what the system said.
std::string explain_open_failure(const std::string& device, bool refused,
                                 const std::string& system_text);

}  // namespace kelvane
