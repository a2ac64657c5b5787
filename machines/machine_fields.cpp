#include "machines/machine_fields.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "machines/advanced_form.h"
#include "machines/configure_form.h"

namespace kelvane {

namespace {

using Record = MachineSettings;
using Advanced = Configure_IO_advanced_lite;
using Configure = configure_IO_lite;

constexpr std::string_view port_prefix = "COM";
constexpr std::string_view baud_prefix = "BAUD";
constexpr int baud_offset = 2;
constexpr int old_baud_offset = 4;
constexpr int old_highest_port = 116;
constexpr int old_transfer_port = 4;

// --- Texts of the lines

/// The line's value when it is just one of 0..count-1.
std::optional<int> code_of(std::string_view line, std::size_t count) {
    const double value = Val(line);
    for (int code = 0; code < static_cast<int>(count); ++code) {
        if (value == code) {
            return code;
        }
    }
    return std::nullopt;
}

template <std::string Record::*Member>
constexpr Field_text plain_text() {
    return {[](const Record& record) { return record.*Member; },
            [](const std::string& line, Old_port_form, Record& record) { record.*Member = line; }};
}

template <bool Record::*Member>
constexpr Field_text yes_no_text() {
    return {[](const Record& record) { return std::string(record.*Member ? "YES" : "NO"); },
            [](const std::string& line, Old_port_form, Record& record) {
                record.*Member = line == "YES";
            }};
}

template <typename Code, Code Record::*Member, std::size_t Count>
constexpr Field_text code_text() {
    return {[](const Record& record) { return Str(static_cast<int>(record.*Member)); },
            [](const std::string& line, Old_port_form, Record& record) {
                if (const auto code = code_of(line, Count)) {
                    record.*Member = static_cast<Code>(*code);
                }
            }};
}

constexpr Field_text port_text = {
    [](const Record& record) { return std::string(port_prefix) + decimal(record.com_port); },
    [](const std::string& line, Old_port_form old_form, Record& record) {
        if (line.starts_with(port_prefix)) {
            record.com_port = whole_number(std::string_view(line).substr(port_prefix.size()));
        } else {
            const bool from_four = old_form == Old_port_form::from_four;
            record.com_port = CInt((from_four ? old_transfer_port : old_highest_port) - Val(line));
        }
    }};

constexpr Field_text baud_text = {
    [](const Record& record) {
        return std::string(baud_prefix) + Str(std::int64_t{record.baud_index} - baud_offset);
    },
    [](const std::string& line, Old_port_form, Record& record) {
        const bool prefixed = line.starts_with(baud_prefix);
        const auto number = std::string_view(line).substr(prefixed ? baud_prefix.size() : 0);
        record.baud_index = CInt(Val(number) + (prefixed ? baud_offset : old_baud_offset));
    }};

constexpr Field_text stop_bits_text = {
    [](const Record& record) { return Str(record.stop_bits_index); },
    [](const std::string& line, Old_port_form, Record& record) {
        record.stop_bits_index = whole_number(line);
    }};

constexpr Field_text end_of_block_text = {
    [](const Record& record) {
        const int code = static_cast<int>(record.end_of_block);
        return record.end_of_block == End_of_block::custom
                   ? decimal(code) + record.custom_end_of_block
                   : Str(code);
    },
    [](const std::string& line, Old_port_form, Record& record) {
        const auto code = code_of(line, end_of_block_count);
        record.end_of_block = code ? static_cast<End_of_block>(*code) : End_of_block::unknown;
        if (record.end_of_block == End_of_block::custom) {
            record.custom_end_of_block = line.substr(1);
        }
    }};

constexpr Field_text handshake_check_text = {
    [](const Record& record) { return record.handshake_check; },
    [](const std::string& line, Old_port_form, Record& record) {
        record.handshake_check = Val(line) == 0 ? "5" : line;
    }};

constexpr Field_text timeout_text = {[](const Record& record) {
                                         return (record.until_aborted ? "*" : "") +
                                                stored_timeout(record.timeout);
                                     },
                                     [](const std::string& line, Old_port_form, Record& record) {
                                         record.until_aborted = line.starts_with("*");
                                         record.timeout = line.substr(record.until_aborted ? 1 : 0);
                                     }};

constexpr Field_text separate_files_text = {
    [](const Record& record) { return print_number(record.separate_files); },
    [](const std::string& line, Old_port_form, Record& record) {
        record.separate_files = whole_number(line);
    }};

constexpr Field_text data_bits_text = {
    [](const Record& record) { return std::string(record.eight_data_bits ? "True" : "False"); },
    [](const std::string& line, Old_port_form, Record& record) {
        record.eight_data_bits = upper_case(line) == "TRUE";
    }};

// --- Controls

template <typename Control>
Control& part(Record_forms forms, Control Configure::*control) {
    return forms.port.*control;
}

template <typename Control>
Control& part(Record_forms forms, Control Advanced::*control) {
    return forms.options.*control;
}

template <std::string Record::*Member, auto Box>
constexpr Field_control text_box() {
    return {
        [](Record_forms forms, const Record& record) { part(forms, Box).set_text(record.*Member); },
        [](Record_forms forms, Record& record) { record.*Member = part(forms, Box).text(); }};
}

template <bool Record::*Member, auto Box>
constexpr Field_control check_box() {
    return {
        [](Record_forms forms, const Record& record) {
            part(forms, Box).set_checked(record.*Member);
        },
        [](Record_forms forms, Record& record) { record.*Member = part(forms, Box).checked(); }};
}

template <int Record::*Member, auto List>
constexpr Field_control list_position() {
    return {
        [](Record_forms forms, const Record& record) {
            List_box& list = part(forms, List);
            if (record.*Member >= 0 && record.*Member < static_cast<int>(list.count())) {
                list.select(record.*Member);
            }
        },
        [](Record_forms forms, Record& record) { record.*Member = part(forms, List).selected(); }};
}

/// Boxes of which one is set; none counts as `Without`.
template <typename Code, Code Record::*Member, Box_group Record_boxes::*Group, Code Without>
constexpr Field_control box_of_group() {
    return {[](Record_forms forms, const Record& record) {
                (forms.port.boxes.*Group).set(static_cast<std::size_t>(record.*Member));
            },
            [](Record_forms forms, Record& record) {
                const auto box = (forms.port.boxes.*Group).last_set();
                record.*Member = box ? static_cast<Code>(*box) : Without;
            }};
}

constexpr Field_control port_list = {
    [](Record_forms forms, const Record& record) { forms.port.show_com_port(record.com_port); },
    [](Record_forms forms, Record& record) { record.com_port = forms.port.shown_com_port(); }};

constexpr Field_control end_of_block_boxes = {
    [](Record_forms forms, const Record& record) {
        forms.port.boxes.show_end_of_block(record.end_of_block, record.custom_end_of_block);
    },
    [](Record_forms forms, Record& record) {
        const auto box = forms.port.boxes.ends_of_block.last_set();
        record.end_of_block = box ? static_cast<End_of_block>(*box) : End_of_block::lfcr;
        record.custom_end_of_block = forms.port.Custom_EOB_txt.text();
    }};

// The boxes first: their handlers mend a time-out that the file may well hold.
constexpr Field_control timeout_boxes = {
    [](Record_forms forms, const Record& record) {
        forms.options.Chk_RX_until_aborted.set_checked(record.until_aborted);
        forms.options.Chk_RX_until_timeout.set_checked(!record.until_aborted);
        forms.options.Timeout_txt.set_enabled(!record.until_aborted);
        forms.options.Timeout_txt.set_text(record.timeout);
    },
    [](Record_forms forms, Record& record) {
        record.until_aborted = forms.options.Chk_RX_until_aborted.checked();
        record.timeout = forms.options.Timeout_txt.text();
    }};

constexpr Field_control separate_files_box = {
    [](Record_forms forms, const Record& record) {
        forms.options.Chk_Separate_files.set_value(record.separate_files);
    },
    [](Record_forms forms, Record& record) {
        record.separate_files = forms.options.Chk_Separate_files.value();
    }};

constexpr Field_control data_bits_buttons = {
    [](Record_forms forms, const Record& record) {
        (record.eight_data_bits ? forms.port.Opt_8_bits : forms.port.Opt_7_bits).set_value(true);
    },
    [](Record_forms forms, Record& record) {
        record.eight_data_bits = forms.port.Opt_8_bits.value();
    }};

// --- Rows in which text and control go together

constexpr std::string_view milliseconds = "milliseconds";

template <std::string Record::*Member, auto Box>
constexpr Machine_field text_row(std::string_view name, std::string_view form = "text") {
    return {name, form, plain_text<Member>(), text_box<Member, Box>()};
}

template <bool Record::*Member, auto Box>
constexpr Machine_field yes_no_row(std::string_view name) {
    return {name, "`YES` or `NO`", yes_no_text<Member>(), check_box<Member, Box>()};
}

// clang-format off: a row is read across
constexpr Machine_field rows[] = {
    {"COM port", "`COM3`; 1 to 128", port_text, port_list},
    {"baud rate",
     "`BAUD` and a number with its sign or a blank: -2 115200, -1 57600, 0 38400, 1 28800, "
     "2 19200, 3 9600, 4 4800, 5 2400, 6 1200, 7 600, 8 300, 9 110",
     baud_text, list_position<&Record::baud_index, &Configure::BAUD_lst>()},
    {"stop bits", "` 0` two, ` 1` one and a half, ` 2` one", stop_bits_text,
     list_position<&Record::stop_bits_index, &Configure::stopbits_lst>()},
    {"tape code", "` 0` ASCII even, ` 1` ASCII odd, ` 2` ASCII none, ` 3` EIA",
     code_text<Tape_code, &Record::tape_code, tape_code_count>(),
     box_of_group<Tape_code, &Record::tape_code, &Record_boxes::tape_codes,
                  Tape_code::ascii_even>()},
    {"handshake", "` 0` none, ` 1` Xon/Xoff, ` 2` RTS/CTS, ` 3` both",
     code_text<Handshake, &Record::handshake, handshake_count>(),
     box_of_group<Handshake, &Record::handshake, &Record_boxes::handshakes, Handshake::xon_xoff>()},
    {"end of block", "` 0` LF, ` 1` CR, ` 2` LF/CR, ` 3` CR/LF, or `4` and the custom text",
     end_of_block_text, end_of_block_boxes},
    text_row<&Record::leader, &Advanced::leader_txt>("leader"),
    text_row<&Record::trailer, &Advanced::Trailer_txt>("trailer"),
    yes_no_row<&Record::ignore_before, &Advanced::chk_ignore_before>(
        "ignore data before first EOB"),
    yes_no_row<&Record::ignore_after, &Advanced::chk_ignore_after>("ignore data after last EOB"),
    yes_no_row<&Record::man_readables, &Advanced::chk_manreads>("man-readables"),
    {"characters between looks at the handshake", "number; empty or 0 counts as 5",
     handshake_check_text, text_box<&Record::handshake_check, &Advanced::HS_loop_txt>()},
    yes_no_row<&Record::auto_code_recognition, &Advanced::chk_auto_code_recognition>(
        "auto code recognition"),
    text_row<&Record::skip_starting_with, &Advanced::skipit_txt>("skip data that starts with"),
    {"receive time-out", "seconds, 65 at most; `*` in front: until aborted", timeout_text,
     timeout_boxes},
    text_row<&Record::send_mask, &Advanced::Mask_txt>("characters never sent"),
    text_row<&Record::skip_up_to, &Advanced::skip_upto_txt>("skip data up to and including"),
    {"separate files by O-numbers", "` 0 ` or ` 1 `", separate_files_text, separate_files_box},
    text_row<&Record::character_delay, &Advanced::Character_delay_txt>("delay between characters",
                                                                       milliseconds),
    yes_no_row<&Record::delete_blank_lines, &Advanced::Chk_delete_blank_lines>(
        "delete blank lines"),
    yes_no_row<&Record::tv_parity, &Advanced::chk_TV_parity>("spaces for TV parity"),
    text_row<&Record::block_delay, &Advanced::Block_delay_txt>("delay between blocks",
                                                               milliseconds),
    text_row<&Record::receive_mask, &Advanced::Input_mask_txt>("characters never stored"),
    text_row<&Record::skip_lines_containing, &Advanced::Skip_lines_txt>("skip lines that contain"),
    {"eight data bits", "`True` or `False`", data_bits_text, data_bits_buttons},
};
// clang-format on

}  // namespace

constexpr std::span<const Machine_field> machine_fields = rows;

}  // namespace kelvane
