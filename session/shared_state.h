#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>

#include "session/page_layout.h"
#include "session/tape_code.h"

namespace kelvane {

/// Name of the built-in machine, always at position 0 of the machine list and never in its file.
inline constexpr const char* default_machine = "(default)";

/// The variables that the main window owns and every routine reads and writes by name. Flags are 0
/// or 1, where nothing else is said. They are how event handlers talk to loops that run inside a
/// yield, so they are read again after every yield.
struct Shared_state {
    // --- The command and its file
    std::string filename;              ///< path of the file the current command works on
    int Command_line = 0;              ///< -1: started with a non-empty command line
    int Command_line_event = 0;        ///< command number of the command line, 1..6
    std::string Command_line_machine;  ///< may be empty
    std::string Command_line_filename;

    // --- The selected machine
    int IO_device = 0;  ///< index in the machine list, 0 is "(default)"
    std::string IO_device_name = default_machine;

    // --- Listings
    Page_layout page_layout;  ///< that is in force
    int Print_first_page_only = 0;
    int halt_printing = 0;

    // --- What is going on
    int escape = 0;         ///< 1: every running loop gives up
    int receiving = 0;      ///< 1: data of this receive has been stored
    int sending = 0;        ///< 1: a send is on
    int busy = 0;           ///< 1: a transfer is set up or running
    int Xoff = 0;           ///< 1: output paused, by the machine's Xoff or the Stop button
    int IOsend_cancel = 0;  ///< 1: the operator stopped a send
    int Sendit_now = 0;     ///< 1: start or resume output (Send button, machine's Xon)
    int Stopped = 0;        ///< 1: Stop pressed once, its caption reads "Reset"
    bool RX_binary = false;
    int TX_binary = 0;           ///< -1: binary send, 0: text send
    std::string binaryfilename;  ///< file of a binary send
    std::int64_t RXbytecount = 0;
    int RXopenfile = 0;   ///< 1: a receive's staging file takes data
    std::string RX_form;  ///< `filename` as it was when the receive started
    int RX_file_counter = 0;

    // --- Files and directories
    /// The program's own files (names as in `file_names`) that are there and could not be read at
    /// start-up: defaults stand for them, and they are not written over.
    std::set<std::string, std::less<>> unread_files;
    std::string default_path;
    std::string file_types;         ///< filter of the file dialog
    std::string file_types_second;  ///< second line of its file, kept as it is
    int Add_extension = 0;

    // --- Settings of the machine of this transfer, loaded when the transfer starts
    Tape_code TX_code = Tape_code::ascii_even;
    std::string TX_eob;      ///< end of block as characters, before conversion
    int RX_eob = 10;         ///< end of block as it arrives, one byte's value
    int RX_code = 0;         ///< column of the received-byte table: 0 ASCII, 1 EIA
    bool RTShs = false;      ///< RTS/CTS handshake
    bool Xonhs = false;      ///< Xon/Xoff handshake
    char Xon_char = '\x11';  ///< in the tape code's parity
    char Xoff_char = '\x13';
    int HS_loop = 5;           ///< the handshake is checked every so many characters
    long Character_delay = 0;  ///< milliseconds after every character
    long Block_delay = 0;      ///< milliseconds after every block
    std::string skipit;        ///< a line is sent only up to this text
    std::string Skip_lines;    ///< a line that holds this text is not sent
    std::string TX_Mask;       ///< characters that are never sent
    std::string RX_Mask;       ///< characters that are never stored
    std::string Skip_upto;     ///< received text up to and including this goes
    int Separate_files = 0;    ///< not 0: a file for each program number
    bool RX_until_aborted = false;
    bool exclamation_point_delay = false;  ///< lines that begin with "!" are pauses
    bool Send_TV_parity = false;
    bool Delete_blank_lines = false;
    bool Use_auto_code_recognition = true;
    bool ignore_before = false;  ///< cleared by the conversion after its use
    bool ignore_after = false;
    std::string unwanted;  ///< raw bytes that a text receive throws away
    bool ASCII_only = false;
    bool DNC_alarm = false;  ///< true ends a running send before its next line
    int DNC_cycle = 0;       ///< not 0: the file is sent again and again; 1 waits for Xon each time
};

}  // namespace kelvane
