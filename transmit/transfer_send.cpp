// The road of one send, from the working copy to the last character of the tail.

#include <algorithm>

#include "platform/basic_text.h"
#include "session/file_names.h"
#include "transmit/binary_send.h"
#include "transmit/control_characters.h"
#include "transmit/scratch_copy.h"
#include "transmit/switchbox.h"
#include "transmit/transfer.h"

namespace kelvane {

namespace {

/// The readable leader and the tail are bit patterns, not text: sent as they are.
constexpr Tape_code as_it_is = Tape_code::ascii_no_parity;

}  // namespace

// Send and Stop are live from here to the end, whatever was pressed or disabled before: an operator
// must be able to start, pause and end a send at any moment.
Fault_or_ok Transfer::run_send() {
    state_.sending = 1;
    window_.Enable_buttons();
    const auto length = platform_.files.length(state_.filename).value_or(0);
    window_.show_text("Ready to send binary file " + state_.filename +
                      "\r\nFile size:" + Str(static_cast<std::int64_t>(length)) + " bytes");
    return state_.TX_binary != 0 ? send_binary() : send_text();
}

Fault_or_ok Transfer::send_binary() {
    if (const Fault_or_ok fault = Send_switchbox_codes(window_, sender_, state_.TX_code)) {
        return fault;
    }
    wait_for_start();
    window_.show_text("Sending binary file " + state_.filename);
    if (state_.IOsend_cancel == 1 || given_up()) {
        platform_.desktop.beep();
    } else if (!Sendit_Binary(window_, sender_)) {
        window_.box("Cannot access file\n" + state_.binaryfilename, Message_icon::exclamation,
                    Message_buttons::ok, "Disk read error");
    }
    return std::nullopt;
}

Fault_or_ok Transfer::send_text() {
    if (!prepare_text()) {
        return std::nullopt;
    }
    if (const Fault_or_ok fault = Send_switchbox_codes(window_, sender_, state_.TX_code)) {
        return fault;
    }
    wait_for_start();
    if (state_.IOsend_cancel != 1 && !given_up()) {
        send_program();
    }
    platform_.files.remove(platform_.files.program_path(file_names::scratch));
    platform_.desktop.beep();
    return std::nullopt;
}

/// Makes the working copy, shows it, and tries the whole expansion of called files, so that nothing
/// leaves of a program that cannot be sent to its end.
bool Transfer::prepare_text() {
    window_.show_text("Creating copy of file " + state_.filename);
    if (!Make_scratchpad_copy(window_, state_.filename)) {
        return false;
    }
    const std::string copy = platform_.files.program_path(file_names::scratch);
    window_.show_text(platform_.files.read(copy).value_or(std::string()));
    state_.Xoff = 0;
    current_line_ = settings_.leader;
    sent_count_ = 0;
    lines_.open(copy, state_.filename, state_.default_path);
    if (const auto error = lines_.check()) {
        window_.box(expansion_error_text(*error));
        platform_.files.remove(copy);
        return false;
    }
    return true;
}

void Transfer::wait_for_start() {
    window_.status.set(Activity::waiting_for_start);
    while (state_.IOsend_cancel != 1 && state_.Sendit_now == 0 && !given_up()) {
        if (sender_.take_handshakes(false)) {
            state_.Sendit_now = 1;
        } else {
            platform_.loop.process_events();
        }
    }
}

void Transfer::send_program() {
    do {
        send_pass();
        if (given_up() || state_.DNC_alarm || state_.DNC_cycle == 0) {
            break;
        }
        begin_next_cycle();
    } while (!ends_between_lines());
}

void Transfer::send_pass() {
    for (const auto& [text, code] :
         {std::pair(&readable_.leader, as_it_is), std::pair(&current_line_, state_.TX_code)}) {
        sender_.sendit2(*text, code);
        if (given_up()) {
            return;
        }
    }
    send_all_lines();
}

void Transfer::send_all_lines() {
    std::string line;
    lines_.Get_next_line(Sub_file_reader::reset, line);
    while (lines_.Get_next_line(1, line)) {
        show_line(line);
        if (state_.DNC_alarm || ends_between_lines()) {
            return;
        }
        if (const auto block = as_sent(line)) {
            sender_.sendit(*block + state_.TX_eob, state_.TX_code);
        }
        count_line(line);
        if (given_up()) {
            return;
        }
    }
    if (lines_.error()) {
        window_.box(expansion_error_text(*lines_.error()) +
                    "\nThe transfer has ended before its end.");
        return;
    }
    if (!ends_between_lines()) {
        send_trailer();
    }
}

void Transfer::send_trailer() {
    sender_.sendit2(readable_.trailer, state_.TX_code);
    sender_.sendit2(readable_.tail, as_it_is);
}

/// The line after the send options, or no value when nothing of it is sent.
std::optional<std::string> Transfer::as_sent(std::string line) const {
    if (!state_.skipit.empty()) {
        const std::size_t cut = line.find(state_.skipit);
        if (cut == 0) {
            return std::nullopt;
        }
        line.resize(std::min(cut, line.size()));
    }
    if (state_.Delete_blank_lines && (line.empty() || line == " ")) {
        return std::nullopt;
    }
    if (state_.Send_TV_parity && (line.size() + state_.TX_eob.size()) % 2 != 0) {
        line += ' ';
    }
    if (!state_.Skip_lines.empty() && line.find(state_.Skip_lines) != std::string::npos) {
        return std::nullopt;
    }
    return line;
}

void Transfer::show_line(const std::string& line) {
    if (const auto offset = lines_.main_offset()) {
        window_.Text1.select(*offset, line.size());
    }
}

void Transfer::count_line(const std::string& line) {
    sent_count_ += line.size() + cr_lf.size();
    if (const std::uint64_t total = lines_.total(); total > 0) {
        window_.set_progress(static_cast<int>(sent_count_ * 100 / total % 100));
    }
}

void Transfer::begin_next_cycle() {
    state_.Xoff = state_.DNC_cycle == 1 ? 1 : state_.Xoff;
    current_line_ = settings_.leader;
    sent_count_ = current_line_.size() + cr_lf.size();
    window_.set_progress(0);
    window_.Text1.select(0, 0);
}

// Under Xon/Xoff a press of Stop only pauses: the flow control holds the output until Send or a
// second press. Without it the send ends here.
bool Transfer::ends_between_lines() const {
    const bool paused = state_.Xonhs && state_.Stopped != 0;
    return state_.IOsend_cancel == 1 && !paused;
}

}  // namespace kelvane
