#include "machines/machine_settings.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace kelvane {

namespace {

constexpr std::string_view port_prefix = "COM";
constexpr std::string_view baud_prefix = "BAUD";
constexpr int baud_offset = 2;
constexpr int old_baud_offset = 4;
constexpr int old_highest_port = 116;
constexpr int old_transfer_port = 4;
constexpr int longest_timeout = 65;

/// How one line of the file is written and read.
struct Line {
    std::string (*write)(const MachineSettings&);
    void (*read)(const std::string& line, Old_port_form, MachineSettings&);
};

bool begins_with(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// The line's value when it is just one of 0..count-1.
std::optional<int> code_of(std::string_view line, int count) {
    const double value = Val(line);
    for (int code = 0; code < count; ++code) {
        if (value == code) {
            return code;
        }
    }
    return std::nullopt;
}

std::string write_port(const MachineSettings& settings) {
    return std::string(port_prefix) + decimal(settings.com_port);
}

void read_port(const std::string& line, Old_port_form old_form, MachineSettings& settings) {
    if (begins_with(line, port_prefix)) {
        settings.com_port = whole_number(std::string_view(line).substr(port_prefix.size()));
    } else {
        const bool from_four = old_form == Old_port_form::from_four;
        settings.com_port = CInt((from_four ? old_transfer_port : old_highest_port) - Val(line));
    }
}

std::string write_baud(const MachineSettings& settings) {
    return std::string(baud_prefix) + Str(std::int64_t{settings.baud_index} - baud_offset);
}

void read_baud(const std::string& line, Old_port_form, MachineSettings& settings) {
    const bool prefixed = begins_with(line, baud_prefix);
    const auto number = std::string_view(line).substr(prefixed ? baud_prefix.size() : 0);
    settings.baud_index = CInt(Val(number) + (prefixed ? baud_offset : old_baud_offset));
}

std::string write_end_of_block(const MachineSettings& settings) {
    return settings.end_of_block == eob_custom ? decimal(eob_custom) + settings.custom_end_of_block
                                               : Str(settings.end_of_block);
}

void read_end_of_block(const std::string& line, Old_port_form, MachineSettings& settings) {
    settings.end_of_block = code_of(line, eob_custom + 1).value_or(eob_unknown);
    if (settings.end_of_block == eob_custom) {
        settings.custom_end_of_block = line.substr(1);
    }
}

std::string write_handshake_check(const MachineSettings& settings) {
    return settings.handshake_check;
}

void read_handshake_check(const std::string& line, Old_port_form, MachineSettings& settings) {
    settings.handshake_check = Val(line) == 0 ? "5" : line;
}

std::string write_timeout(const MachineSettings& settings) {
    return (settings.until_aborted ? "*" : "") + stored_timeout(settings.timeout);
}

void read_timeout(const std::string& line, Old_port_form, MachineSettings& settings) {
    settings.until_aborted = begins_with(line, "*");
    settings.timeout = line.substr(settings.until_aborted ? 1 : 0);
}

std::string write_separate_files(const MachineSettings& settings) {
    return print_number(settings.separate_files);
}

void read_separate_files(const std::string& line, Old_port_form, MachineSettings& settings) {
    settings.separate_files = whole_number(line);
}

std::string write_data_bits(const MachineSettings& settings) {
    return settings.eight_data_bits ? "True" : "False";
}

void read_data_bits(const std::string& line, Old_port_form, MachineSettings& settings) {
    settings.eight_data_bits = upper_case(line) == "TRUE";
}

template <std::string MachineSettings::*Field>
constexpr Line text_line() {
    return {[](const MachineSettings& settings) { return settings.*Field; },
            [](const std::string& line, Old_port_form, MachineSettings& settings) {
                settings.*Field = line;
            }};
}

template <bool MachineSettings::*Field>
constexpr Line yes_no_line() {
    return {
        [](const MachineSettings& settings) { return std::string(settings.*Field ? "YES" : "NO"); },
        [](const std::string& line, Old_port_form, MachineSettings& settings) {
            settings.*Field = line == "YES";
        }};
}

template <int MachineSettings::*Field>
constexpr Line number_line() {
    return {[](const MachineSettings& settings) { return Str(settings.*Field); },
            [](const std::string& line, Old_port_form, MachineSettings& settings) {
                settings.*Field = whole_number(line);
            }};
}

template <int MachineSettings::*Field, int Count>
constexpr Line code_line() {
    return {[](const MachineSettings& settings) { return Str(settings.*Field); },
            [](const std::string& line, Old_port_form, MachineSettings& settings) {
                settings.*Field = code_of(line, Count).value_or(settings.*Field);
            }};
}

constexpr std::array<Line, settings_line_count> lines = {{
    {write_port, read_port},
    {write_baud, read_baud},
    number_line<&MachineSettings::stop_bits_index>(),
    code_line<&MachineSettings::tape_code, eia + 1>(),
    code_line<&MachineSettings::handshake, handshake_both + 1>(),
    {write_end_of_block, read_end_of_block},
    text_line<&MachineSettings::leader>(),
    text_line<&MachineSettings::trailer>(),
    yes_no_line<&MachineSettings::ignore_before>(),
    yes_no_line<&MachineSettings::ignore_after>(),
    yes_no_line<&MachineSettings::man_readables>(),
    {write_handshake_check, read_handshake_check},
    yes_no_line<&MachineSettings::auto_code_recognition>(),
    text_line<&MachineSettings::skip_starting_with>(),
    {write_timeout, read_timeout},
    text_line<&MachineSettings::send_mask>(),
    text_line<&MachineSettings::skip_up_to>(),
    {write_separate_files, read_separate_files},
    text_line<&MachineSettings::character_delay>(),
    yes_no_line<&MachineSettings::delete_blank_lines>(),
    yes_no_line<&MachineSettings::tv_parity>(),
    text_line<&MachineSettings::block_delay>(),
    text_line<&MachineSettings::receive_mask>(),
    text_line<&MachineSettings::skip_lines_containing>(),
    {write_data_bits, read_data_bits},
}};

}  // namespace

int read_machine_settings(Text_reader& reader, Old_port_form old_form, MachineSettings& settings) {
    int count = 0;
    std::string text;
    for (const Line& line : lines) {
        if (!reader.line(text)) {
            break;
        }
        line.read(text, old_form, settings);
        ++count;
    }
    return count;
}

std::string machine_settings_text(const MachineSettings& settings) {
    Text_writer writer;
    for (const Line& line : lines) {
        writer.line(one_line(line.write(settings)));
    }
    return writer.text();
}

std::string stored_timeout(const std::string& text) {
    if (text.empty()) {
        return "3";
    }
    return Val(text) > longest_timeout ? decimal(longest_timeout) : text;
}

std::string one_line(std::string_view text) {
    std::string result(text);
    std::erase_if(result, [](char c) { return c == '\r' || c == '\n'; });
    return result;
}

}  // namespace kelvane
