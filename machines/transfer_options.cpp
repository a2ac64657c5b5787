#include "machines/transfer_options.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "machines/machine_fields.h"
#include "machines/machine_files.h"
#include "machines/machine_settings.h"
#include "machines/notation.h"
#include "machines/port_devices.h"
#include "machines/port_wiring.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr int longest_delay_ms = 3'600'000;

struct Handshake_characters {
    int xon;
    int xoff;
};

// DC1 and DC3 in the parity of each tape code; EIA machines take the even-parity forms.
constexpr Handshake_characters handshake_characters[] = {{17, 147}, {145, 19}, {17, 19}, {17, 147}};
static_assert(std::size(handshake_characters) == tape_code_count);

struct Block_end {
    const char* sent;
    bool by_carriage_return;  // the byte that ends a received block
};

constexpr Block_end block_ends[] = {{"\n", false}, {"\r", true}, {"\n\r", false}, {"\r\n", true}};

constexpr int eia_end_of_block = 128;

/// What a transfer uses when the machine has no settings file: the default port, and nothing added
/// to the program, left out of it or filtered.
MachineSettings without_file() {
    MachineSettings settings;
    settings.leader.clear();
    settings.trailer.clear();
    settings.ignore_before = false;
    settings.ignore_after = false;
    return settings;
}

int received_block_end(bool by_carriage_return, Tape_code tape_code) {
    if (by_carriage_return) {
        return tape_code == Tape_code::ascii_even ? 141 : 13;
    }
    return tape_code == Tape_code::ascii_odd ? 138 : 10;
}

Fault_or_ok take_block_end(const MachineSettings& record, Transfer_options& options) {
    options.RX_code = record.tape_code == Tape_code::eia ? receive_eia : receive_ascii;
    if (record.tape_code == Tape_code::eia) {
        options.TX_eob = "\n";
        options.RX_eob = eia_end_of_block;
        return std::nullopt;
    }
    if (record.end_of_block == End_of_block::custom) {
        options.RX_eob = received_block_end(false, record.tape_code);
        return parsit(record.custom_end_of_block, record.tape_code, options.TX_eob);
    }
    const End_of_block known =
        record.end_of_block == End_of_block::unknown ? End_of_block::crlf : record.end_of_block;
    const Block_end& end = block_ends[static_cast<std::size_t>(known)];
    options.TX_eob = end.sent;
    options.RX_eob = received_block_end(end.by_carriage_return, record.tape_code);
    return std::nullopt;
}

std::string line_settings(const MachineSettings& record) {
    const char* parity = ",N,8,";
    if (record.eight_data_bits && record.tape_code == Tape_code::ascii_even) {
        parity = ",E,8,";
    } else if (record.eight_data_bits && record.tape_code == Tape_code::ascii_odd) {
        parity = ",O,8,";
    }
    return std::string(choice(baud_rates, record.baud_index)) + parity +
           std::string(choice(stop_bit_choices, record.stop_bits_index));
}

void take_port(const MachineSettings& record, Transfer_options& options) {
    options.com_port = record.com_port;
    options.line_settings = line_settings(record);
    options.handshake = record.handshake;
    options.TX_code = record.tape_code;
    options.Xonhs = uses_xon_xoff(record.handshake);
    options.RTShs = uses_rts_cts(record.handshake);
    const Handshake_characters& characters =
        handshake_characters[static_cast<std::size_t>(record.tape_code)];
    options.Xon_char = static_cast<char>(characters.xon);
    options.Xoff_char = static_cast<char>(characters.xoff);
}

void take_choices(const MachineSettings& record, Transfer_options& options) {
    options.readable_leader = record.man_readables;
    options.timeout_s = timeout_seconds(record.timeout);
    options.ignore_before = record.ignore_before;
    options.ignore_after = record.ignore_after;
    options.HS_loop = whole_number(record.handshake_check);
    options.Use_auto_code_recognition = record.auto_code_recognition;
    options.skipit = record.skip_starting_with;
    options.RX_until_aborted = record.until_aborted;
    options.Separate_files = record.separate_files;
    options.Character_delay = std::clamp(whole_number(record.character_delay), 0, longest_delay_ms);
    options.Delete_blank_lines = record.delete_blank_lines;
    options.Send_TV_parity = record.tv_parity;
    options.Block_delay = std::clamp(whole_number(record.block_delay), 0, longest_delay_ms);
    options.Skip_lines = record.skip_lines_containing;
    options.unwanted = "\n\r\x80\x8a\x8d\x1a";
}

Fault_or_ok take_texts(const MachineSettings& record, Transfer_options& options) {
    const std::pair<const std::string&, std::string&> texts[] = {
        {record.leader, options.leader},        {record.trailer, options.trailer},
        {record.send_mask, options.TX_Mask},    {record.skip_up_to, options.Skip_upto},
        {record.receive_mask, options.RX_Mask},
    };
    for (const auto& [text, characters] : texts) {
        if (const Fault_or_ok fault = parsit(text, record.tape_code, characters)) {
            return fault;
        }
    }
    return take_block_end(record, options);
}

/// Without the file such lines are sent; whether it is there must be known for certain.
void read_exclamation_delay(const Files& files, Loaded_options& loaded) {
    const std::string path = files.program_path(file_names::exclamation_delay);
    const auto file = files.read(path);
    if (file.unreadable()) {
        loaded.path = path;
        loaded.unreadable = file.reason();
    }
    if (!file) {
        return;
    }
    Transfer_options& options = loaded.options;
    Text_reader reader(*file);
    reader.line_number(options.exclamation_delay_ms);
    options.exclamation_delay_ms = std::clamp(options.exclamation_delay_ms, 0, longest_delay_ms);
    options.exclamation_point_delay = true;
}

}  // namespace

Loaded_options load_transfer_options(const Files& files, const std::string& machine) {
    Loaded_options loaded;
    const std::string name = port_settings_name(machine);
    loaded.path = files.program_path(name);
    auto content = read_machine_file(files, name);
    if (content.unreadable()) {
        loaded.unreadable = content.reason();
        return loaded;
    }
    Text_reader reader(std::move(content));
    MachineSettings record = without_file();
    loaded.complete =
        read_machine_settings(reader, Old_port_form::from_four, record) == machine_fields.size();
    loaded.options.machine = machine;
    take_port(record, loaded.options);
    take_choices(record, loaded.options);
    loaded.fault = take_texts(record, loaded.options);
    read_exclamation_delay(files, loaded);
    if (const auto device = read_device(files, record.com_port)) {
        loaded.options.device = *device;
    } else {
        loaded.options.device = "unknown device";
        loaded.unknown_device =
            "What the COM numbers are wired to cannot be read: " + device.reason();
    }
    return loaded;
}

Port_settings line_of(const Transfer_options& options) {
    Port_settings line;
    line.device = options.device;
    line.settings = options.line_settings;
    line.xon = options.Xon_char;
    line.xoff = options.Xoff_char;
    return line;
}

std::string summary_of(const Transfer_options& options) {
    const std::string dot = " \xb7 ";
    std::string handshake = options.Xonhs ? "Xon/Xoff" : "";
    if (options.RTShs) {
        handshake += handshake.empty() ? "RTS/CTS" : " and RTS/CTS";
    }
    return com_name(options.com_port) + " (" + options.device + ")" + dot +
           options.line_settings.substr(0, options.line_settings.find(',')) + dot +
           std::string(tape_code_name(options.TX_code)) + dot +
           (handshake.empty() ? "no handshake" : handshake);
}

}  // namespace kelvane
