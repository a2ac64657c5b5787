#include "receive/receive.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"
#include "platform/lines.h"
#include "receive/conversion.h"
#include "receive/receive_saver.h"
#include "receive/save_received.h"
#include "session/file_names.h"
#include "session/line_trouble.h"
#include "transmit/switchbox.h"

namespace kelvane {

namespace {

Transfer_end end_with_note(Outcome outcome, std::string note, Message box) {
    Transfer_end end = end_with(outcome, std::move(box));
    end.note = std::move(note);
    return end;
}

Message illegal_characters() {
    return critical_box(
        "Illegal characters received via serial port.\n"
        "Be sure baudrate, stop-bits, and tape code\n"
        "match the CNCs parameter settings.\n"
        "(Hint: use automatic code recognition)\n"
        "If CNC sends man-readable leaders,\n"
        "use option to ignore data before 1st EOB",
        "Serial data error");
}

/// What the operator should know of a text that is about to be saved; `kept` is its end, `separate`
/// says that its programs get files of their own.
std::string told_of(const Receive::Text& received, std::string_view kept, bool separate) {
    if (!received.recognised) {
        return "saved unconverted: tape code not recognised";
    }
    const std::string_view dropped =
        std::string_view(received.text).substr(0, received.text.size() - kept.size());
    Reception_doubts doubts = received.doubts;
    drop_lines(doubts, static_cast<std::size_t>(std::count(dropped.begin(), dropped.end(), '\n')));
    const std::string text = doubts_text(doubts);
    return separate && !text.empty() ? text + "\n(lines counted through all programs)" : text;
}

}  // namespace

Receive::Receive(const Session& session, const Code_tables& tables)
    : session_(session), tables_(tables), staging_(session.files, session.loop) {}

Task<Transfer_end> Receive::receive(const Transfer_options& options, std::string path,
                                    bool binary) {
    if (auto refusal = stage(options.machine, path, binary)) {
        co_return std::move(*refusal);
    }
    session_.control.enable_stop();
    Text_sender sender(session_, tables_, options, Text_sender::On_stop::ends);
    auto codes_refusal = co_await Send_switchbox_codes(session_, options, sender);
    if (codes_refusal) {
        co_return std::move(*codes_refusal);
    }
    session_.control.wait_for_data();
    session_.op.show_text(binary ? "Ready to receive BINARY data ..."
                                 : "Ready to receive data ...");
    const Collected collected = co_await collect(options);
    if (collected.end != Collected_end::silence) {
        co_return unfinished_end(collected, path);
    }
    session_.control.line_silent();
    if (binary) {
        co_return co_await save_binary(collected.bytes, std::move(path));
    }
    span_ = collected.span;
    cause_.clear();
    Transfer_end end = co_await save_text(options, std::move(path));
    add_remark(end, cause_);
    co_return end;
}

std::optional<Transfer_end> Receive::stage(const std::string& machine, const std::string& path,
                                           bool binary) {
    using Form = Unsaved_reception::Form;
    std::string reason;
    if (!binary && same_path(path, staging_.path())) {
        reason = "The program itself works with this file. Choose another name.";
    } else if (const auto cleared =
                   staging_.begin({machine, path, binary ? Form::binary : Form::raw, {}});
               !cleared) {
        reason = cleared.reason();
    } else {
        return std::nullopt;
    }
    return end_with(
        Outcome::refused,
        warning_box("Cannot access file\n" + staging_.path() + "\n" + reason, "Disk write error"));
}

Task<Collected> Receive::collect(const Transfer_options& options) {
    Receive_poll poll(session_, staging_, options);
    co_return co_await poll.run();
}

Transfer_end Receive::unfinished_end(const Collected& collected, const std::string& path) const {
    const std::string& staging = staging_.path();
    const bool some = collected.bytes > 0;
    const std::string kept = some ? "The bytes received are in " + staging : std::string();
    const std::string port = session_.control.port_name();
    switch (collected.end) {
        case Collected_end::line_lost:
            return end_with_note(
                Outcome::lost_line, port + " is no longer there" + (some ? "  |  " : "") + kept,
                critical_box(port + " is no longer there." +
                                 (some ? "\nThe bytes received until then are kept in\n" + staging
                                       : "\nNothing had come."),
                             "Com port error"));
        case Collected_end::unwritten:
            return end_with_note(
                Outcome::disk_full,
                "Receive ended: disk write error" + std::string(some ? "  |  " : "") + kept,
                critical_box("Cannot access file\n" + staging + "\n" + collected.reason +
                                 "\nThe bytes received until then are kept in it.",
                             "Disk write error"));
        case Collected_end::overflow:
            return end_with(Fault::overflow);
        default:
            return stopped_end(kept, path);
    }
}

Transfer_end Receive::stopped_end(std::string kept, const std::string& path) const {
    const bool nothing_but_nulls = kept.empty() && session_.port.discarded_nulls() > 0;
    Transfer_end end;
    end.outcome = Outcome::stopped;
    end.log = "Receive aborted. File " + path + " not saved.";
    end.note = std::move(kept);
    add_remark(end, nothing_but_nulls ? std::string(only_nulls) : std::string());
    return end;
}

Task<Transfer_end> Receive::save_binary(std::int64_t bytes, std::string path) {
    session_.control.happens(Transfer_event::converted);
    const std::string received = "Received: " + Str(bytes) + " bytes of BINARY data ...";
    session_.op.show_text(received);
    Transfer_end end = keep_binary(path);
    while (end.outcome == Outcome::disk_full) {
        const bool again = co_await tries_again(end, path);
        if (!again) {
            co_return end;
        }
        end = keep_binary(path);
    }
    end.note = received + "  " + path;
    co_return end;
}

/// Under the fixed name in the program directory, and as `path`.
Transfer_end Receive::keep_binary(const std::string& path) {
    Files& files = session_.files;
    const std::string target = files.program_path(file_names::received_binary);
    if (files.exists(staging_.path())) {
        const auto moved = files.rename(staging_.path(), target);
        if (const auto kept = moved ? moved : files.copy(staging_.path(), target); !kept) {
            return unsaved_end(target, kept.reason(), staging_.path());
        }
    }
    if (const auto copied = files.copy(target, path); !copied) {
        return unsaved_end(path, copied.reason(), target);
    }
    staging_.remove();
    return {};
}

Task<Transfer_end> Receive::save_text(const Transfer_options& options, std::string path) {
    const std::string not_saved = "Not saved; the received data is in " + staging_.path();
    const Text_or_trouble converted = co_await code_convert_file(options);
    if (const auto* trouble = std::get_if<Message>(&converted)) {
        co_return end_with_note(Outcome::disk_full, not_saved, *trouble);
    }
    const auto& received = std::get<Text>(converted);
    if (received.text.empty()) {
        co_return end_with_note(Outcome::nothing_received, not_saved, illegal_characters());
    }
    session_.control.happens(Transfer_event::converted);
    std::string kept(skipped_up_to(received.text, options.Skip_upto));
    if (kept.empty()) {
        co_return end_with_note(
            Outcome::nothing_received, not_saved,
            critical_box("Nothing was received after the text up to which data is skipped.\n"
                         "The received data is kept in\n" +
                             staging_.path(),
                         "Received data error"));
    }
    if (received.recognised) {
        session_.control.count_received_lines(count_lines(kept));
    }
    const std::string doubts = told_of(received, kept, options.Separate_files != 0);
    Transfer_end end = co_await save(kept, options, std::move(path), doubts);
    end.remarks = doubts;
    if (received.recognised) {
        tell(end, doubts);
    }
    co_return end;
}

/// As often as the operator wants to try.
Task<Transfer_end> Receive::save(const std::string& text, const Transfer_options& options,
                                 std::string path, const std::string& doubts) {
    while (true) {
        Receive_saver saver(session_, staging_, path, doubts);
        Transfer_end end = co_await saver.save(text, options);
        if (end.outcome != Outcome::disk_full) {
            co_return end;
        }
        const bool again = co_await tries_again(end, path);
        if (!again) {
            co_return end;
        }
    }
}

/// After a save to `path` that failed: asks, in the place of the end's box, whether to try again,
/// and moves `path` to where.
Task<bool> Receive::tries_again(Transfer_end& end, std::string& path) {
    const auto next = co_await ask_next_path(session_.op, *end.box, path);
    if (!next) {
        end.box.reset();
        co_return false;
    }
    path = *next;
    session_.control.goes_to(path);
    co_return true;
}

/// A box, unless another one is due; a job that nobody may be watching ends without one.
void Receive::tell(Transfer_end& end, const std::string& doubts) const {
    if (doubts.empty() || end.box) {
        return;
    }
    if (session_.state.job_runs) {
        session_.desktop.tell_standard_error(doubts);
    } else {
        end.box = warning_box(doubts, "Received data error");
    }
}

Task<Receive::Text_or_trouble> Receive::code_convert_file(const Transfer_options& options) {
    const auto raw = staging_.read();
    if (!raw) {
        co_return critical_box("Cannot access file\n" + staging_.path() + "\n" + raw.reason(),
                               "Disk read error");
    }
    const auto code = code_of(*raw, options);
    if (!code) {
        name_cause(*raw);
        const Message box = unrecognised_box();
        co_await session_.op.ask(box);
        co_return Text{*raw, false, {}};
    }
    if (options.Use_auto_code_recognition) {
        session_.op.show_text(code->column == receive_eia ? "Code converting EIA data"
                                                          : "Code converting ASCII/ISO data");
    }
    const Conversion_options dropped = conversion_options(options);
    std::string text = co_await converted_text(session_.loop, tables_, *raw, *code, dropped);
    if (text.empty()) {
        name_cause(*raw);
    }
    if (const auto staged = stage_text(text); !staged) {
        co_return *unsaved_end(session_.files.program_path(file_names::scratch_converted),
                               staged.reason(), staging_.path())
            .box;
    }
    co_return Text{std::move(text), true, doubts_of(*raw, tables_, *code, dropped)};
}

/// Also under the box that tells it; the end of the transfer tells the errors by itself.
void Receive::name_cause(std::string_view raw) {
    const Line_errors errors = session_.port.line_errors();
    const std::string cause =
        likeliest_cause({raw, errors, span_, session_.port.characters_per_second()});
    session_.op.show_text(cause);
    cause_ = errors == Line_errors() ? cause : std::string();
}

/// The text takes the bytes' place only when it is complete; an empty one never does.
Result<> Receive::stage_text(const std::string& text) {
    if (text.empty()) {
        return {};
    }
    Files& files = session_.files;
    const std::string converted = files.program_path(file_names::scratch_converted);
    auto staged = files.replace(converted, text).and_then([&] {
        return files.rename(converted, staging_.path());
    });
    if (!staged) {
        files.remove(converted);
    } else {
        staging_.converted();
    }
    return staged;
}

}  // namespace kelvane
