#pragma once

#include <functional>
#include <set>
#include <string>

#include "session/page_layout.h"

namespace kelvane {

/// Name of the built-in machine, always at position 0 of the machine list and never in its file.
inline constexpr const char* default_machine = "(default)";

/// The variables that the main window owns and every routine knows by name. Flags are 0 or 1, where
/// nothing else is said. What is going on stands in `Transfer_control`.
struct Shared_state {
    // --- The command and its file
    std::string filename;  ///< path of the file the current command works on
    /// A command line that is no job but the name of a program to open.
    std::string Command_line_open;
    int Command_line = 0;              ///< -1: started with a non-empty command line
    int Command_line_event = 0;        ///< command number of the command line, 1..6
    std::string Command_line_machine;  ///< may be empty
    std::string Command_line_filename;
    bool job_runs = false;  ///< of the command line: nobody may be there to answer

    // --- The selected machine
    int IO_device = 0;  ///< index in the machine list, 0 is "(default)"
    std::string IO_device_name = default_machine;

    // --- Listings
    Page_layout page_layout;  ///< that is in force
    int Print_first_page_only = 0;
    int halt_printing = 0;  ///< reserved: nothing consults it

    // --- What is sent or received
    bool RX_binary = false;      ///< of a receive that is asked for
    int TX_binary = 0;           ///< -1: binary send, 0: text send
    std::string binaryfilename;  ///< file of a binary send

    // --- Files and directories
    /// The program's own files (names as in `file_names`) that are there and could not be read at
    /// start-up: defaults stand for them, and they are not written over.
    std::set<std::string, std::less<>> unread_files;
    std::string default_path;
    std::string file_types;  ///< filter of the file dialog
    int Add_extension = 0;
};

}  // namespace kelvane
