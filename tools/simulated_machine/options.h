#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulated_machine/tape_code.h"

namespace kelvane::simulated {

/// One thing the machine does: read a program from the line or punch one to it.
struct Job {
    bool reads = true;
    std::string file;  ///< what is read into, or punched from
    std::string raw;   ///< reading: also the bytes of the line; empty for none
};

/// Everything the command line says. Lengths count characters.
struct Options {
    std::string link;
    std::vector<Job> jobs;
    std::string serve;  ///< folder of the interactive mode; empty without it
    bool loop = false;
    bool keep_session = false;
    std::string report;
    std::chrono::seconds timeout{0};  ///< 0: no limit
    std::chrono::milliseconds linger{10000};

    long baud = 9600;
    int stop_bits = 1;
    Tape_code code = Tape_code::even;
    bool binary = false;
    std::string end_of_block = "\r\n";
    std::string switchbox;
    std::size_t hang_up_after = 0;  ///< 0: never
    bool attentive = false;

    std::size_t buffer = 1024;
    std::size_t high_water = 0;  ///< 0 on the command line: three quarters of the buffer
    std::size_t low_water = 0;   ///< 0 on the command line: a quarter of the buffer
    double drain = 0;            ///< characters a second; 0: at once
    std::size_t fifo = 0;
    std::size_t alarm_after = 10;
    bool silent = false;
    bool label_skip = false;
    bool dc3_after_percent = false;
    std::chrono::milliseconds start_delay{300};
    std::chrono::milliseconds ask_again{3000};  ///< 0: asks once
    std::chrono::milliseconds idle{3000};       ///< 0: silence does not end a program
    std::size_t pause_at = 0;                   ///< 0: no pause
    std::chrono::milliseconds pause{0};

    std::size_t leader = 60;
    std::uint8_t leader_byte = 0;
    std::size_t trailer = 60;
    bool bare = false;
    bool dc2_until_answered = false;
    bool full_speed = false;
};

/// What came of the command line: options, or a message to show and no options.
struct Parsed {
    std::optional<Options> options;
    bool help = false;  ///< the message is the help, not a complaint
    std::string message;
};

/// Reads the command line without the program's name.
[[nodiscard]] Parsed parse_options(const std::vector<std::string>& arguments);

}  // namespace kelvane::simulated
