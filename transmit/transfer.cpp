#include "transmit/transfer.h"

#include <utility>

#include "machines/port_devices.h"
#include "platform/basic_text.h"
#include "transmit/binary_send.h"
#include "transmit/switchbox.h"
#include "transmit/text_send.h"

namespace kelvane {

namespace {

Port_settings port_settings(const Transfer_options& options, bool receives, bool binary) {
    Port_settings port = line_of(options);
    port.handshake = receives ? options.handshake : Handshake::none;
    port.transparent = binary;
    port.null_discard = !binary;
    return port;
}

/// A job ends with its box, so there is nothing to configure then.
Transfer_end port_refusal(const Transfer_options& options, const std::string& reason,
                          const Shared_state& state) {
    const std::string fixed_text =
        com_name(options.com_port) + " port is not available\nSelect a different COM port";
    const std::string text = fixed_text + (reason.empty() ? "" : "\n\n" + reason);
    Transfer_end refusal = end_with(Outcome::refused, warning_box(text, "Com port error"));
    refusal.box->buttons = state.job_runs ? Message_buttons::ok : Message_buttons::ok_configure;
    refusal.log = text;
    refusal.remarks = reason;
    return refusal;
}

}  // namespace

Transfer::Transfer(const Session& session, const Code_tables& tables, Receiver& receiver)
    : session_(session), control_(session.control), tables_(tables), receiver_(receiver) {}

Task<Outcome> Transfer::Start_transfer(int mode, std::optional<Program_part> part) {
    if (mode != send && mode != receive) {
        co_return Outcome::refused;
    }
    Job job = job_of(mode);
    if (!control_.begin(mode == send ? Direction::send : Direction::receive, job.path)) {
        session_.op.beep();
        co_return Outcome::refused;
    }
    const Transfer_control::Running running(control_);
    job.part = std::move(part);
    Transfer_end end = co_await run(std::move(job));
    co_await control_.end(std::move(end));
    co_return control_.outcome();
}

Transfer::Job Transfer::job_of(int mode) const {
    const Shared_state& state = session_.state;
    if (mode == receive) {
        return {receive, state.RX_binary, state.filename};
    }
    const bool binary = state.TX_binary != 0;
    return {send, binary, binary ? state.binaryfilename : state.filename};
}

Task<Transfer_end> Transfer::run(Job job) {
    const Loaded_options loaded =
        load_transfer_options(session_.files, session_.state.IO_device_name);
    const std::string unread = "Unable to read from file\n" + loaded.path + "\n";
    if (!loaded.unreadable.empty()) {
        co_return end_with(Outcome::refused,
                           warning_box(unread + loaded.unreadable, "File read error"));
    }
    if (!loaded.complete) {
        const Message box =
            warning_box(unread + "Using default COM port configuration", "File read error");
        co_await session_.op.ask(box);
    }
    if (loaded.fault) {
        co_return end_with(*loaded.fault);
    }
    const Transfer_options& options = loaded.options;
    if (!loaded.unknown_device.empty()) {
        co_return port_refusal(options, loaded.unknown_device, session_.state);
    }
    if (auto refusal = open_port(job, options)) {
        co_return std::move(*refusal);
    }
    if (job.mode == receive) {
        co_return co_await receiver_.receive(options, job.path, job.binary);
    }
    co_return co_await run_send(job, options);
}

std::optional<Transfer_end> Transfer::open_port(const Job& job, const Transfer_options& options) {
    control_.use(options.machine, com_name(options.com_port) + " (" + options.device + ")");
    const Port_settings settings = port_settings(options, job.mode == receive, job.binary);
    if (const auto opened = session_.port.open(settings); !opened) {
        return port_refusal(options, opened.reason(), session_.state);
    }
    control_.set_times({options.timeout_s * 1000, options.Character_delay, options.Block_delay,
                        options.exclamation_delay_ms});
    return std::nullopt;
}

// Send and Stop are live from here to the end, whatever was pressed or disabled before: an operator
// must be able to start, pause and end a send at any moment.
Task<Transfer_end> Transfer::run_send(Job job, const Transfer_options& options) {
    control_.begin_sending();
    const auto length = session_.files.length(job.path).value_or(0);
    session_.op.show_text("Ready to send binary file " + job.path +
                          "\r\nFile size:" + Str(static_cast<std::int64_t>(length)) + " bytes");
    Text_sender sender(session_, tables_, options);
    Transfer_end end;
    std::optional<Text_send> text;
    if (job.binary) {
        end = co_await send_binary(options, sender, job.path);
    } else {
        auto known = known_content ? known_content(job.path) : nullptr;
        text.emplace(session_, options, sender, job.path, std::move(job.part), std::move(known));
        end = co_await text->run();
    }
    co_await drain();
    const bool gone = session_.port.lost() && !end.box;
    if (gone) {
        end = end_with(Outcome::lost_line, warning_box(com_name(options.com_port) +
                                                           " is no longer there.\nThe transfer has "
                                                           "ended before its end.",
                                                       "Com port error"));
    } else if (end.outcome == Outcome::done && control_.escape() == 1) {
        end.outcome = Outcome::stopped;
    }
    if (text && end.outcome != Outcome::done) {
        text->tell_place(end);
    }
    co_return end;
}

Task<Transfer_end> Transfer::send_binary(const Transfer_options& options, Text_sender& sender,
                                         std::string path) {
    auto refusal = co_await Send_switchbox_codes(session_, options, sender);
    if (refusal) {
        co_return std::move(*refusal);
    }
    co_await wait_for_start(session_, sender);
    session_.op.show_text("Sending binary file " + path);
    if (control_.IOsend_cancel() == 1 || sender.given_up()) {
        Transfer_end stopped;
        stopped.outcome = Outcome::stopped;
        co_return stopped;
    }
    const auto sent = co_await Sendit_Binary(session_, options, sender, path);
    if (!sent) {
        co_return end_with(
            Outcome::refused,
            warning_box("Cannot access file\n" + path + "\n" + sent.reason(), "Disk read error"));
    }
    Transfer_end end;
    end.outcome = *sent == Binary_sent::all ? Outcome::done : Outcome::stopped;
    end.quiet = true;
    co_return end;
}

// A finished transfer lets its last characters leave; a transfer that was given up throws its
// output away when the port closes.
Task<> Transfer::drain() {
    if (!session_.port.is_open()) {
        co_return;
    }
    static_cast<void>(session_.port.input(0));
    control_.happens(Transfer_event::all_sent);
    while (control_.escape() != 1 && session_.port.is_open() &&
           session_.port.out_buffer_count() > 0) {
        co_await session_.loop.next();
    }
    co_await control_.Delay(1);
}

}  // namespace kelvane
