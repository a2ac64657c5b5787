#include "receive/receive_loop.h"

#include <limits>

#include "platform/basic_text.h"
#include "session/file_names.h"
#include "transmit/control_characters.h"

namespace kelvane {

Receive_loop::Receive_loop(Kelvane_lite_form& window, const Code_tables& tables)
    : window_(window),
      state_(window.state),
      platform_(window.platform),
      tables_(tables),
      staging_(window.platform.files.program_path(file_names::scratch)) {
    window_.Timer5.on_tick = [this] { poll(); };
    window_.Timer6.on_tick = [this] { end_of_receive(); };
    window_.Timer8.on_tick = [this] {
        window_.Timer8.set_enabled(false);
        platform_.port.output(std::string(1, state_.Xon_char));
    };
}

void Receive_loop::poll() {
    window_.Timer5.set_enabled(false);
    if (state_.escape == 1 || state_.Stopped == 1) {
        abort();
        return;
    }
    const bool lost = platform_.port.lost();
    if (platform_.port.in_buffer_count() > 0) {
        take_waiting();
    }
    if (lost) {
        end_on_lost_port();
    } else if (state_.RXopenfile != 0) {
        window_.Timer5.set_enabled(true);
    }
}

void Receive_loop::abort() {
    stop_timers();
    state_.receiving = 0;
    state_.RXopenfile = 0;
    platform_.port.close();
    window_.show_text("Receive aborted. File " + state_.filename + " not saved.");
    window_.Disable_buttons();
    state_.busy = 0;
    window_.status.end(state_.RXbytecount == 0 ? std::string()
                                               : "The bytes received are in " + staging_);
}

void Receive_loop::take_waiting() {
    if (state_.receiving == 0) {
        window_.show_text("Receiving data ... 0 bytes");
        platform_.desktop.beep();
    }
    const std::string data = platform_.port.input(0);
    if (is_lone_dc2(data)) {
        window_.Timer8.set_enabled(true);
        return;
    }
    if (!store(data)) {
        return;
    }
    window_.show_text("Receiving data ..." + Str(state_.RXbytecount) + " bytes");
    window_.status.set(Activity::receiving);
    window_.status.set_bytes(state_.RXbytecount);
    window_.Timer6.set_enabled(!state_.RX_until_aborted);
    state_.receiving = 1;
    window_.Timer8.set_enabled(false);
}

bool Receive_loop::is_lone_dc2(const std::string& data) const {
    return state_.receiving == 0 && data.size() == 1 &&
           without_parity(data.front()) == control::dc2;
}

bool Receive_loop::store(const std::string& data) {
    const auto total = state_.RXbytecount + static_cast<std::int64_t>(data.size());
    if (total > std::numeric_limits<std::int32_t>::max()) {
        state_.RXopenfile = 0;
        window_.report_fault(Fault::overflow);
        return false;
    }
    if (const auto stored = platform_.files.append(staging_, data); !stored) {
        end_on_full_disk(stored.reason());
        return false;
    }
    state_.RXbytecount = total;
    return true;
}

void Receive_loop::end_on_lost_port() {
    const std::string port = window_.status.port();
    give_up(port + " is no longer there");
    window_.box(
        port + " is no longer there.\nThe bytes received until then are kept in\n" + staging_,
        Message_icon::critical, Message_buttons::ok, "Com port error");
    if (state_.Command_line != 0) {
        window_.unload();
    }
}

void Receive_loop::end_on_full_disk(const std::string& reason) {
    give_up("Receive ended: disk write error");
    window_.box("Cannot access file\n" + staging_ + "\n" + reason +
                    "\nThe bytes received until then are kept in it.",
                Message_icon::critical, Message_buttons::ok, "Disk write error");
}

void Receive_loop::stop_timers() {
    for (Timer* timer : {&window_.Timer5, &window_.Timer6, &window_.Timer8}) {
        timer->set_enabled(false);
    }
}

void Receive_loop::give_up(const std::string& note) {
    stop_timers();
    state_.receiving = 0;
    state_.RXopenfile = 0;
    platform_.port.close();
    state_.busy = 0;
    window_.reset_transfer_display();
    window_.status.end(note + "  |  The bytes received are in " + staging_);
}

}  // namespace kelvane
