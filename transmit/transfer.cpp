#include "transmit/transfer.h"

#include <algorithm>

#include "platform/basic_text.h"
#include "session/file_names.h"
#include "transmit/switchbox.h"

namespace kelvane {

Transfer::Transfer(Kelvane_lite_form& window, const Code_tables& tables)
    : window_(window),
      state_(window.state),
      platform_(window.platform),
      sender_(window, tables),
      lines_(window.platform.files) {}

void Transfer::Start_transfer(int mode) {
    if (mode != send && mode != receive) {
        return;
    }
    if (state_.busy != 0) {
        platform_.desktop.beep();
        return;
    }
    const Running_work::Scope at_work(window_.control.work);
    clear_transfer_state(state_);
    window_.Timer5.set_enabled(false);
    window_.Timer6.set_enabled(false);
    state_.busy = 1;
    read_exclamation_delay();
    Fault_or_ok fault = load_transfer_settings(window_, settings_);
    if (!fault && !window_.closing()) {
        make_readable_leader_strings(mode);
        if (state_.escape != 1 && open_port(mode)) {
            fault = mode == receive ? arm_receive() : run_send();
        }
        if (mode == send || !platform_.port.is_open()) {
            clean_up();
        }
    }
    end_with(fault);
}

void Transfer::end_with(Fault_or_ok fault) {
    if (fault) {
        window_.report_fault(*fault);
    }
    const bool ended = !platform_.port.is_open();
    if (ended && state_.Command_line != 0 && !window_.closing()) {
        window_.unload();
    }
}

void Transfer::read_exclamation_delay() {
    const auto file =
        platform_.files.read(platform_.files.program_path(file_names::exclamation_delay));
    if (!file) {
        return;
    }
    Text_reader reader(*file);
    int milliseconds = 0;
    reader.line_number(milliseconds);
    window_.exclamation_timer.set_interval(std::max(milliseconds, 0));
    state_.exclamation_point_delay = true;
}

void Transfer::make_readable_leader_strings(int mode) {
    readable_ = {{}, settings_.trailer, {}};
    if (mode == send && state_.TX_binary == 0 && settings_.readable_leader) {
        readable_ = readable_leader(state_.filename, state_.TX_code, settings_.trailer);
    }
}

Port_settings Transfer::port_settings(int mode) const {
    Port_settings port;
    port.com_port = settings_.com_port;
    port.settings = port_settings_text(settings_, state_.TX_code);
    port.handshake = mode == receive ? settings_.handshake : Handshake::none;
    port.transparent = mode == receive ? state_.RX_binary : state_.TX_binary != 0;
    port.null_discard = !port.transparent;
    port.xon = state_.Xon_char;
    port.xoff = state_.Xoff_char;
    return port;
}

bool Transfer::open_port(int mode) {
    const std::string com = "COM" + decimal(settings_.com_port);
    window_.status.begin(com + " (" + platform_.port.device_of(settings_.com_port) + ")");
    port_trouble_.clear();
    const bool opened = platform_.port.open(port_settings(mode)) == Port_error::none;
    if (!opened) {
        const std::string fixed_text = com + " port is not available\nSelect a different COM port";
        window_.box(fixed_text, Message_icon::exclamation, Message_buttons::ok, "Com port error");
        port_trouble_ = fixed_text + "\n\n" + platform_.port.error_text();
    }
    window_.Timer6.set_interval(settings_.timeout_s * 1000);
    window_.Timer9.set_interval(static_cast<int>(state_.Character_delay));
    window_.Timer12.set_interval(static_cast<int>(state_.Block_delay));
    return opened;
}

Fault_or_ok Transfer::arm_receive() {
    state_.sending = 0;
    state_.escape = 0;
    const std::string staging = platform_.files.program_path(file_names::scratch);
    const bool is_target = !state_.RX_binary && same_path(state_.filename, staging);
    const Result<> emptied =
        is_target ? Failure{"The program itself works with this file. Choose another name."}
                  : platform_.files.replace(staging, {});
    if (!emptied) {
        window_.box("Cannot access file\n" + staging + "\n" + emptied.reason(),
                    Message_icon::exclamation, Message_buttons::ok, "Disk write error");
        platform_.port.close();
        return std::nullopt;
    }
    state_.RXopenfile = 1;
    state_.RXbytecount = 0;
    window_.Stop_button.set_enabled(true);
    if (const Fault_or_ok fault = Send_switchbox_codes(window_, sender_, state_.TX_code)) {
        return fault;
    }
    state_.RX_form = state_.filename;
    ++state_.RX_file_counter;
    window_.status.set_bytes(0);
    window_.status.set(Activity::waiting_for_data);
    window_.show_text(state_.RX_binary ? "Ready to receive BINARY data ..."
                                       : "Ready to receive data ...");
    window_.Timer5.set_enabled(!window_.closing());
    return std::nullopt;
}

void Transfer::clean_up() {
    state_.sending = 0;
    drain();
    window_.Enable_buttons();
    window_.show_text(port_trouble_);
    window_.set_progress(0);
    const bool was_lost = platform_.port.lost();
    platform_.port.close();
    window_.Timer5.set_enabled(false);
    state_.busy = 0;
    if (state_.Stopped != 0) {
        state_.Stopped = 0;
        state_.Xoff = 0;
        window_.Stop_button.set_caption("Stop");
    }
    window_.status.end();
    if (was_lost) {
        const std::string com = "COM" + decimal(settings_.com_port);
        window_.box(com + " is no longer there.\nThe transfer has ended before its end.",
                    Message_icon::exclamation, Message_buttons::ok, "Com port error");
    }
}

// A finished transfer lets its last characters leave; a transfer that was given up throws its
// output away when the port closes.
void Transfer::drain() {
    if (!platform_.port.is_open()) {
        return;
    }
    static_cast<void>(platform_.port.input(0));
    window_.status.set(Activity::draining);
    while (state_.escape != 1 && platform_.port.is_open() &&
           platform_.port.out_buffer_count() > 0) {
        platform_.loop.process_events();
    }
    window_.Delay(1);
}

bool Transfer::given_up() const {
    return state_.escape == 1 || !platform_.port.is_open();
}

}  // namespace kelvane
