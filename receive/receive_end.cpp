// The end of a receive: conversion, saving, and what the operator is shown.

#include "platform/basic_text.h"
#include "receive/receive_loop.h"
#include "receive/separate_programs.h"
#include "session/file_names.h"

namespace kelvane {

// Data that came in since the last poll means that the line was not silent: it is taken first, and
// the silence counts anew.
void Receive_loop::end_of_receive() {
    if (state_.escape == 1 || state_.Stopped == 1 || platform_.port.lost() ||
        platform_.port.in_buffer_count() > 0) {
        poll();
        return;
    }
    const Running_work::Scope at_work(window_.control.work);
    stop_timers();
    window_.Disable_buttons();
    platform_.port.close();
    platform_.desktop.beep();
    state_.RXopenfile = 0;
    if (state_.RX_binary) {
        finish_binary();
    } else {
        finish_text();
    }
}

void Receive_loop::finish_binary() {
    const std::string received =
        "Received: " + Str(state_.RXbytecount) + " bytes of BINARY data ...";
    window_.show_text(received);
    const std::string target = platform_.files.program_path(file_names::received_binary);
    const bool moved = platform_.files.rename(staging_, target) ||
                       (platform_.files.copy(staging_, target) && platform_.files.remove(staging_));
    window_.reset_transfer_display();
    state_.RX_form.clear();
    state_.busy = 0;
    state_.RX_binary = false;
    window_.status.end(received + "  " + (moved ? target : staging_));
}

void Receive_loop::finish_text() {
    window_.status.set(Activity::converting);
    if (!code_convert_file()) {
        finish(false);
        return;
    }
    if (platform_.files.length(staging_).value_or(0) == 0) {
        tell_illegal_characters();
        return;
    }
    window_.status.set(Activity::saving);
    if (!apply_skip_upto()) {
        finish(false);
        return;
    }
    finish(state_.Separate_files == 0 ? save_single_file() : save_separate_files());
}

void Receive_loop::tell_illegal_characters() {
    window_.box(
        "Illegal characters received via serial port.\n"
        "Be sure baudrate, stop-bits, and tape code\n"
        "match the CNCs parameter settings.\n"
        "(Hint: use automatic code recognition)\n"
        "If CNC sends man-readable leaders,\n"
        "use option to ignore data before 1st EOB",
        Message_icon::critical, Message_buttons::ok, "Serial data error");
    window_.reset_transfer_display();
    state_.busy = 0;
    window_.status.end("Nothing was saved");
}

bool Receive_loop::apply_skip_upto() {
    if (state_.Skip_upto.empty()) {
        return true;
    }
    const auto text = read_staging();
    if (!text) {
        return false;
    }
    const std::string_view kept = skipped_up_to(*text, state_.Skip_upto);
    if (kept.empty()) {
        window_.box(
            "Nothing was received after the text up to which data is skipped.\n"
            "The received data is kept in\n" +
                staging_,
            Message_icon::critical, Message_buttons::ok, "Received data error");
        return false;
    }
    return kept.size() == text->size() || write(staging_, std::string(kept));
}

std::optional<std::string> Receive_loop::read_staging() {
    auto text = platform_.files.read(staging_);
    if (!text) {
        window_.box("Cannot access file\n" + staging_ + "\n" + text.reason(),
                    Message_icon::critical, Message_buttons::ok, "Disk read error");
        return std::nullopt;
    }
    return std::move(*text);
}

bool Receive_loop::write(const std::string& path, const std::string& content) {
    const auto written = platform_.files.replace(path, content);
    if (!written) {
        tell_unwritten(path, written.reason());
    }
    return written.has_value();
}

void Receive_loop::tell_unwritten(const std::string& path, const std::string& reason) {
    window_.box("Cannot access file\n" + path + "\n" + reason + "\nThe received data is kept in\n" +
                    staging_,
                Message_icon::critical, Message_buttons::ok, "Disk write error");
}

bool Receive_loop::save_single_file() {
    const auto text = read_staging();
    return text && save_as_one(*text);
}

bool Receive_loop::save_as_one(const std::string& text) {
    if (!write(state_.filename, text)) {
        return false;
    }
    window_.reset_transfer_display();
    window_.show_text(text);
    show_saved_file();
    saved_note_ = "Saved " + state_.filename;
    state_.Stopped = 1;
    state_.Xoff = 1;
    window_.Stop_button.set_caption("Reset");
    return true;
}

void Receive_loop::show_saved_file() {
    const auto length = static_cast<std::int64_t>(window_.Text1.text().size());
    window_.Text1.insert("File " + state_.filename + " has been saved\r\nFile size:" + Str(length) +
                         " bytes\r\nDate: " + platform_.desktop.date_text() + "\r\nTime: " +
                         platform_.desktop.time_text() + "\r\n" + std::string(50, '-') + "\r\n");
}

bool Receive_loop::save_separate_files() {
    const auto text = read_staging();
    if (!text) {
        return false;
    }
    const auto programs = separate_programs(*text);
    if (!programs) {
        if (!save_as_one(*text)) {
            return false;
        }
        window_.box(std::string(fault_text(Fault::subscript_out_of_range)) +
                    "\nMore than 500 programs were received.\nThey are kept together in\n" +
                    state_.filename);
        return true;
    }
    window_.show_text({});
    if (programs->empty()) {
        saved_note_ = "Saved " + state_.filename;
        return write(state_.filename, as_complete_lines(*text) + std::string(cr_lf));
    }
    for (const Received_program& program : *programs) {
        const std::string path = program_file_name(state_.filename, program.number);
        if (!write(path, program.text + std::string(cr_lf))) {
            return false;
        }
        platform_.loop.process_pending();
    }
    saved_note_ =
        "Saved " + std::to_string(programs->size()) + " programs as " + state_.filename + " O ...";
    return true;
}

void Receive_loop::finish(bool saved) {
    if (saved) {
        platform_.files.remove(staging_);
    } else {
        window_.show_text({});
    }
    window_.Enable_buttons();
    window_.set_progress(0);
    state_.receiving = 0;
    state_.RX_form.clear();
    state_.busy = 0;
    window_.status.end(saved ? saved_note_ : "Not saved; the received data is in " + staging_);
    if (state_.Command_line != 0) {
        window_.unload();
    }
}

bool Receive_loop::code_convert_file() {
    const auto raw = read_staging();
    if (!raw) {
        return false;
    }
    Received_code code{state_.RX_code == 1 ? receive_eia : receive_ascii,
                       static_cast<unsigned char>(state_.RX_eob)};
    if (state_.Use_auto_code_recognition) {
        const auto recognised = recognise_code(*raw);
        if (!recognised) {
            window_.box("Cannot recognize received data.\nCheck I/O device settings.",
                        Message_icon::critical, Message_buttons::ok, "Received data error");
            return true;
        }
        code = *recognised;
        window_.show_text(code.column == receive_eia ? "Code converting EIA data"
                                                     : "Code converting ASCII/ISO data");
    }
    const Conversion_options options{state_.ignore_before, state_.ignore_after, state_.unwanted,
                                     state_.RX_Mask};
    const std::string text = convert_received(*raw, tables_, code, options,
                                              [this] { platform_.loop.process_pending(); });
    if (raw->find(static_cast<char>(code.end_of_block)) != std::string::npos) {
        state_.ignore_before = false;
    }
    const std::string converted = platform_.files.program_path(file_names::scratch_converted);
    const auto done = platform_.files.replace(converted, text).and_then([&] {
        return platform_.files.rename(converted, staging_);
    });
    if (!done) {
        tell_unwritten(converted, done.reason());
        platform_.files.remove(converted);
    }
    return done.has_value();
}

}  // namespace kelvane
