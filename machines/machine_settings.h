#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/basic_text.h"
#include "platform/handshake.h"
#include "session/tape_code.h"

namespace kelvane {

inline constexpr std::size_t handshake_count = 4;

/// Ends of block by the number of the settings file.
enum class End_of_block {
    unknown = -1,  ///< the line holds none of the numbers below
    lf = 0,
    cr = 1,
    lfcr = 2,
    crlf = 3,
    custom = 4,  ///< a text of the machine's own
};
inline constexpr std::size_t end_of_block_count = 5;

inline constexpr int default_timeout_s = 3;   ///< silence that ends a reception
inline constexpr int longest_timeout_s = 65;  ///< what a record may ask for

inline constexpr int lowest_com_port = 1;
inline constexpr int highest_com_port = 128;

/// What the operator can choose from, in the order of the lists and of the files' numbers.
inline constexpr std::array<std::string_view, 12> baud_rates = {"115200", "57600", "38400", "28800",
                                                                "19200",  "9600",  "4800",  "2400",
                                                                "1200",   "600",   "300",   "110"};
inline constexpr std::array<std::string_view, 3> stop_bit_choices = {"2", "1.5", "1"};

/// The choice at `index`; empty ("unset") when there is none.
template <std::size_t Size>
constexpr std::string_view choice(const std::array<std::string_view, Size>& choices, int index) {
    const bool exists = index >= 0 && index < static_cast<int>(Size);
    return exists ? choices[static_cast<std::size_t>(index)] : std::string_view();
}

/// One machine's record: what the lines of its settings file hold, each described in
/// `machine_fields`. The start values are those of a new machine. Texts are kept as the file has
/// them; who uses one takes its number or decodes its control characters.
struct MachineSettings {
    int com_port = lowest_com_port;  ///< as read: may lie outside 1..128
    int baud_index = 3;              ///< in `baud_rates`; as read: may lie outside
    int stop_bits_index = 2;         ///< in `stop_bit_choices`; as read: may lie outside
    Tape_code tape_code = Tape_code::ascii_even;
    Handshake handshake = Handshake::xon_xoff;
    End_of_block end_of_block = End_of_block::crlf;
    int separate_files = 0;  ///< 1: a received file per program number

    std::string custom_end_of_block;    ///< meaningful with `custom`; control notation
    std::string leader = "%LFCR";       ///< sent before the program; control notation
    std::string trailer = "%";          ///< sent after it; control notation
    std::string handshake_check = "5";  ///< characters between two looks; never empty or 0
    std::string skip_starting_with;     ///< a sent line is cut before it
    std::string timeout = decimal(default_timeout_s);  ///< end of a reception, in seconds
    std::string send_mask;                             ///< characters never sent; control notation
    std::string skip_up_to;                            ///< receiving; control notation
    std::string character_delay = "0";                 ///< ms
    std::string block_delay = "0";                     ///< ms
    std::string receive_mask;           ///< characters never stored; control notation
    std::string skip_lines_containing;  ///< sending

    bool ignore_before = true;          ///< received data before the first end of block
    bool ignore_after = true;           ///< received data after the last one
    bool man_readables = false;         ///< a leader that can be read on the tape
    bool auto_code_recognition = true;  ///< of received data
    bool until_aborted = false;         ///< a reception ends only by Stop
    bool delete_blank_lines = false;    ///< sending
    bool tv_parity = false;             ///< lines padded to an even length
    bool eight_data_bits = false;
};

/// What the bare number v of an old file's first line stands for. The two readers have never agreed
/// and old files rely on either.
enum class Old_port_form {
    list_position,  ///< the dialog's: position 12 + v of the list from 128 down, port 116 - v
    from_four,      ///< a transfer's: port 4 - v
};

/// Takes the lines of a settings file in order and returns how many there were. What has
/// no line, or a line that says nothing valid (a tape code of 7), keeps its value in
/// `settings`. Any bytes are safe to read.
std::size_t read_machine_settings(Text_reader& reader, Old_port_form old_form,
                                  MachineSettings& settings);

/// All lines. Line ends inside a text cannot be stored and are left out.
[[nodiscard]] std::string machine_settings_text(const MachineSettings& settings);

/// The seconds that a record's time-out stands for, 1 to the longest: 0, less and what is no number
/// are the default.
[[nodiscard]] int timeout_seconds(std::string_view text);

/// The time-out as it is stored: the default for an empty text, the longest for a value above it,
/// else the text.
[[nodiscard]] std::string stored_timeout(const std::string& text);

/// `text` without line ends, so that it stays one line of a file.
[[nodiscard]] std::string one_line(std::string_view text);

}  // namespace kelvane
