#pragma once

#include <string>

#include "platform/fault.h"
#include "platform/files.h"
#include "platform/handshake.h"
#include "platform/serial_port.h"
#include "session/tape_code.h"

namespace kelvane {

/// A machine's record as one transfer uses it: decoded once, when the transfer begins, and constant
/// to its end.
struct Transfer_options {
    std::string machine;  ///< the machine's name

    // --- The line
    int com_port = 1;
    std::string device;  ///< that the number is wired to
    /// Baud rate, parity letter, data bits, stop bits: "9600,N,8,1". With 7 data bits the parity
    /// bit comes from the code table, so the line runs 8 bits without parity.
    std::string line_settings;
    Handshake handshake = Handshake::none;
    bool RTShs = false;      ///< RTS/CTS handshake
    bool Xonhs = false;      ///< Xon/Xoff handshake
    char Xon_char = '\x11';  ///< in the tape code's parity
    char Xoff_char = '\x13';

    // --- Codes
    Tape_code TX_code = Tape_code::ascii_even;
    std::string TX_eob;                      ///< end of block as characters, before conversion
    Receive_column RX_code = receive_ascii;  ///< how received bytes are read
    int RX_eob = 10;                         ///< end of block as it arrives, one byte's value
    bool Use_auto_code_recognition = true;   ///< of received data; else the two above

    // --- Sending
    std::string leader;                    ///< characters, notation decoded
    std::string trailer;                   ///< likewise
    bool readable_leader = false;          ///< a leader that can be read on the tape
    int HS_loop = 5;                       ///< the handshake is checked every so many characters
    int Character_delay = 0;               ///< milliseconds after every character
    int Block_delay = 0;                   ///< milliseconds after every block
    bool exclamation_point_delay = false;  ///< lines that begin with "!" are pauses
    int exclamation_delay_ms = 0;          ///< of so many milliseconds
    std::string skipit;                    ///< a line is sent only up to this text
    std::string Skip_lines;                ///< a line that holds this text is not sent
    std::string TX_Mask;                   ///< characters that are never sent
    bool Delete_blank_lines = false;
    bool Send_TV_parity = false;  ///< lines are padded to an even number of characters

    // --- Receiving
    int timeout_s = 3;              ///< seconds of silence that end a receive, 1..65
    bool RX_until_aborted = false;  ///< no silence ends it
    bool ignore_before = false;     ///< what stands before the first end of block
    bool ignore_after = false;      ///< what stands after the last one
    std::string RX_Mask;            ///< characters that are never stored
    std::string unwanted;           ///< raw bytes that a text receive throws away
    std::string Skip_upto;          ///< received text up to and including this goes
    int Separate_files = 0;         ///< not 0: a file for each program number
};

/// What came of reading a machine's record.
struct Loaded_options {
    Transfer_options options;
    std::string path;       ///< of the settings file; of the one that is unreadable
    bool complete = false;  ///< else the default port settings stand for what it lacks
    /// Why a file that is there cannot be read: another machine may stand at the default port.
    std::string unreadable;
    std::string unknown_device;  ///< that the file that wires the COM numbers cannot be read, why
    Fault_or_ok fault;           ///< a text of the record cannot be decoded
};

/// The line as the machine's record has it, without handshakes of the driver.
[[nodiscard]] Port_settings line_of(const Transfer_options& options);

/// Port, device, rate, tape code and handshake in short, with middle dots between.
[[nodiscard]] std::string summary_of(const Transfer_options& options);

/// Reads the record of `machine`, and the pause of "!" lines, which counts as part of it: a machine
/// that gets such lines though they are pauses stops on them.
[[nodiscard]] Loaded_options load_transfer_options(const Files& files, const std::string& machine);

}  // namespace kelvane
