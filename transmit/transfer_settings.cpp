#include "transmit/transfer_settings.h"

#include <algorithm>

#include "machines/machine_files.h"
#include "machines/machine_settings.h"
#include "session/file_names.h"
#include "transmit/notation.h"

namespace kelvane {

namespace {

constexpr int default_timeout_s = 3;
constexpr int longest_timeout_s = 65;
constexpr int longest_delay_ms = 3'600'000;

struct Handshake_characters {
    int xon;
    int xoff;
};

// DC1 and DC3 in the parity of each tape code; EIA machines take the even-parity forms.
constexpr Handshake_characters handshake_characters[] = {{17, 147}, {145, 19}, {17, 19}, {17, 147}};

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

Fault_or_ok take_block_end(const MachineSettings& record, Shared_state& state) {
    state.RX_code = record.tape_code == Tape_code::eia ? 1 : 0;
    if (record.tape_code == Tape_code::eia) {
        state.TX_eob = "\n";
        state.RX_eob = eia_end_of_block;
        return std::nullopt;
    }
    if (record.end_of_block == End_of_block::custom) {
        state.RX_eob = received_block_end(false, record.tape_code);
        return parsit(record.custom_end_of_block, record.tape_code, state.TX_eob);
    }
    const End_of_block known =
        record.end_of_block == End_of_block::unknown ? End_of_block::crlf : record.end_of_block;
    const Block_end& end = block_ends[static_cast<std::size_t>(known)];
    state.TX_eob = end.sent;
    state.RX_eob = received_block_end(end.by_carriage_return, record.tape_code);
    return std::nullopt;
}

void take_port(const MachineSettings& record, Shared_state& state, Transfer_settings& settings) {
    settings.com_port = record.com_port;
    settings.baud = choice(baud_rates, record.baud_index);
    settings.stop_bits = choice(stop_bit_choices, record.stop_bits_index);
    settings.eight_data_bits = record.eight_data_bits;
    settings.handshake = record.handshake;
    state.TX_code = record.tape_code;
    state.Xonhs = uses_xon_xoff(record.handshake);
    state.RTShs = uses_rts_cts(record.handshake);
    const Handshake_characters& characters =
        handshake_characters[static_cast<std::size_t>(record.tape_code)];
    state.Xon_char = static_cast<char>(characters.xon);
    state.Xoff_char = static_cast<char>(characters.xoff);
}

void take_options(const MachineSettings& record, Shared_state& state, Transfer_settings& settings) {
    settings.readable_leader = record.man_readables;
    const int timeout = whole_number(record.timeout);
    settings.timeout_s = timeout <= 0 ? default_timeout_s : std::min(timeout, longest_timeout_s);
    state.ignore_before = record.ignore_before;
    state.ignore_after = record.ignore_after;
    state.HS_loop = whole_number(record.handshake_check);
    state.Use_auto_code_recognition = record.auto_code_recognition;
    state.skipit = record.skip_starting_with;
    state.RX_until_aborted = record.until_aborted;
    state.Separate_files = record.separate_files;
    state.Character_delay = std::clamp(whole_number(record.character_delay), 0, longest_delay_ms);
    state.Delete_blank_lines = record.delete_blank_lines;
    state.Send_TV_parity = record.tv_parity;
    state.Block_delay = std::clamp(whole_number(record.block_delay), 0, longest_delay_ms);
    state.Skip_lines = record.skip_lines_containing;
}

Fault_or_ok take_texts(const MachineSettings& record, Shared_state& state,
                       Transfer_settings& settings) {
    const std::pair<const std::string&, std::string&> texts[] = {
        {record.leader, settings.leader},     {record.trailer, settings.trailer},
        {record.send_mask, state.TX_Mask},    {record.skip_up_to, state.Skip_upto},
        {record.receive_mask, state.RX_Mask},
    };
    for (const auto& [text, characters] : texts) {
        if (const Fault_or_ok fault = parsit(text, record.tape_code, characters)) {
            return fault;
        }
    }
    return take_block_end(record, state);
}

}  // namespace

void clear_transfer_state(Shared_state& state) {
    state.escape = 0;
    state.sending = 0;
    state.receiving = 0;
    state.IOsend_cancel = 0;
    state.Sendit_now = 0;
    // A hold of the transfer before, by the operator or by its machine, would hold this one's
    // select codes for ever: no machine is connected yet that could send an Xon.
    state.Xoff = 0;
    state.Character_delay = 0;
    state.Block_delay = 0;
    state.Send_TV_parity = false;
    state.Delete_blank_lines = false;
    state.exclamation_point_delay = false;
    state.RX_code = 0;
    state.Use_auto_code_recognition = true;
    state.unwanted = "\n\r\x80\x8a\x8d\x1a";
}

Fault_or_ok load_transfer_settings(Kelvane_lite_form& window, Transfer_settings& settings) {
    const std::string name = port_settings_name(window.state.IO_device_name);
    auto content = read_machine_file(window.platform.files, name);
    if (content.unreadable()) {
        // Another machine may stand at the default port.
        window.box("Unable to read from file\n" + window.platform.files.program_path(name) + "\n" +
                       content.reason(),
                   Message_icon::exclamation, Message_buttons::ok, "File read error");
        window.state.escape = 1;
        return std::nullopt;
    }
    Text_reader reader(std::move(content));
    MachineSettings record = without_file();
    if (read_machine_settings(reader, Old_port_form::from_four, record) < settings_line_count) {
        window.box("Unable to read from file\n" + window.platform.files.program_path(name) +
                       "\nUsing default COM port configuration",
                   Message_icon::exclamation, Message_buttons::ok, "File read error");
    }
    take_port(record, window.state, settings);
    take_options(record, window.state, settings);
    return take_texts(record, window.state, settings);
}

std::string port_settings_text(const Transfer_settings& settings, Tape_code tape_code) {
    const char* parity = ",N,8,";
    if (settings.eight_data_bits && tape_code == Tape_code::ascii_even) {
        parity = ",E,8,";
    } else if (settings.eight_data_bits && tape_code == Tape_code::ascii_odd) {
        parity = ",O,8,";
    }
    return settings.baud + parity + settings.stop_bits;
}

}  // namespace kelvane
