#include "receive/receive_saver.h"

#include <utility>

#include "platform/basic_text.h"

namespace kelvane {

Transfer_end unsaved_end(const std::string& path, const std::string& reason,
                         const std::string& staging) {
    Transfer_end end =
        end_with(Outcome::disk_full, critical_box("Cannot access file\n" + path + "\n" + reason +
                                                      "\nThe received data is kept in\n" + staging,
                                                  "Disk write error"));
    end.note = "Not saved; the received data is in " + staging;
    return end;
}

Receive_saver::Receive_saver(const Session& session, Staging_file& staging, std::string path,
                             std::string doubts)
    : session_(session), staging_(staging), path_(std::move(path)), doubts_(std::move(doubts)) {}

Task<Transfer_end> Receive_saver::save(std::string text, const Transfer_options& options) {
    if (options.Separate_files == 0) {
        co_return save_as_one(text);
    }
    co_return co_await save_separately(std::move(text));
}

Transfer_end Receive_saver::save_as_one(const std::string& text) {
    if (const auto written = session_.files.replace(path_, text); !written) {
        return unsaved_end(path_, written.reason(), staging_.path());
    }
    Transfer_end end = saved("Saved " + path_);
    end.log = report(text.size()) + text;
    end.holds_stop = true;
    return end;
}

std::string Receive_saver::report(std::size_t length) const {
    return "File " + path_ +
           " has been saved\r\nFile size:" + Str(static_cast<std::int64_t>(length)) +
           " bytes\r\nDate: " + session_.desktop.date_text() +
           "\r\nTime: " + session_.desktop.time_text() + "\r\n" + as_complete_lines(doubts_) +
           std::string(50, '-') + "\r\n";
}

Task<Transfer_end> Receive_saver::save_separately(std::string text) {
    auto programs = separate_programs(text);
    if (!programs) {
        Transfer_end end = save_as_one(text);
        if (end.outcome == Outcome::done) {
            end.outcome = Outcome::fault;
            end.box = critical_box(std::string(fault_text(Fault::subscript_out_of_range)) +
                                   "\nMore than 500 programs were received.\nThey are kept "
                                   "together in\n" +
                                   path_);
        }
        co_return end;
    }
    if (programs->empty()) {
        const std::string lines = as_complete_lines(text) + std::string(cr_lf);
        const auto written = session_.files.replace(path_, lines);
        co_return written ? saved("Saved " + path_)
                          : unsaved_end(path_, written.reason(), staging_.path());
    }
    co_return co_await save_programs(std::move(*programs));
}

Task<Transfer_end> Receive_saver::save_programs(std::vector<Received_program> programs) {
    const std::size_t received = programs.size();
    keep_last_of_each_number(programs);
    for (const Received_program& program : programs) {
        const std::string path = program_file_name(path_, program.number);
        const auto written = replace_keeping_old(path, program.text + std::string(cr_lf));
        if (!written) {
            co_return unsaved_end(path, written.reason(), staging_.path());
        }
        co_await session_.loop.breath();
    }
    std::string note =
        "Saved " + std::to_string(programs.size()) + " programs as " + path_ + " O ...";
    if (programs.size() < received) {
        note += "  |  " + std::to_string(received) +
                " were received: of those with one number the last is kept";
    }
    co_return saved(std::move(note));
}

/// What stood in a program's file before is another version of it, and nobody was asked.
Result<> Receive_saver::replace_keeping_old(const std::string& path, const std::string& content) {
    Files& files = session_.files;
    if (!files.exists(path)) {
        return files.replace(path, content);
    }
    const auto old = files.read(path);
    if (old && *old == content) {
        return {};
    }
    return files.copy(path, path + ".bak").and_then([&] { return files.replace(path, content); });
}

Transfer_end Receive_saver::saved(std::string note) {
    staging_.remove();
    Transfer_end end;
    end.note = std::move(note);
    return end;
}

}  // namespace kelvane
