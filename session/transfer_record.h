#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/event_loop.h"
#include "session/transfer_end.h"

namespace kelvane {

/// What a transfer has come to: for the status bar, and for a line of the transfer log.
struct Transfer_record {
    std::string when;     ///< date and time of its end, in the system's short forms
    std::string machine;  ///< empty when the transfer has not come so far
    std::string path;
    Direction direction = Direction::send;
    Outcome outcome = Outcome::done;
    std::int64_t bytes = 0;  ///< that have crossed the line
    std::size_t lines = 0;   ///< of the program that is sent, or the text that is saved; 0: none
    // Of a text send:
    std::uint64_t sent = 0;      ///< bytes of the program, its line ends counted as two
    std::uint64_t total = 0;     ///< that the program has, called files included
    std::size_t line = 0;        ///< the program's line, from 1, that left last; 0: none
    std::size_t first_line = 0;  ///< from 1, with which a part is sent to its end; 0: all is sent
    std::string line_text;
    Clock_time duration{};  ///< from the first byte to the end; of a receive to its last byte
    std::string remarks;    ///< what was wrong although it was done; lines joined by line feeds
};

/// The end of a transfer in a sentence: "Sent PART.NC to Mill: 7,884 bytes, 431 lines in 0:08", or
/// "Stopped at line 112, N480 G1 Y-32., 2,252 of 7,884 bytes".
[[nodiscard]] std::string result_sentence(const Transfer_record& record);

/// "21 %" of the program; there must be some of it.
[[nodiscard]] std::string percent_text(const Transfer_record& record);

/// "21 %, line 112 of 431, 2,252 of 7,884 bytes"; what is not known is left out.
[[nodiscard]] std::string progress_text(const Transfer_record& record);

/// Of a part from the line on with which it begins.
[[nodiscard]] std::size_t lines_to_send(const Transfer_record& record);

/// ", from line 120", or empty when all of the program is sent.
[[nodiscard]] std::string beginning(const Transfer_record& record);

/// "1:05": minutes and seconds.
[[nodiscard]] std::string minutes_and_seconds(Clock_time span);

}  // namespace kelvane
