#include "session/transfer_record.h"

#include <algorithm>
#include <chrono>

#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

std::string bytes_text(const Transfer_record& record) {
    return record.total > 0
               ? grouped_decimal(record.sent) + " of " + grouped_decimal(record.total) + " bytes"
               : grouped_decimal(static_cast<std::uint64_t>(record.bytes)) + " bytes";
}

std::string done_sentence(const Transfer_record& record) {
    const bool send = record.direction == Direction::send;
    std::string text = (send ? "Sent " : "Received ") + name_of(record.path) +
                       (send ? " to " : " from ") + record.machine + ": ";
    text += grouped_decimal(static_cast<std::uint64_t>(record.bytes)) + " bytes";
    if (record.lines > 0) {
        text += ", " + grouped_decimal(record.lines) + (record.lines == 1 ? " line" : " lines");
    }
    return text + " in " + minutes_and_seconds(record.duration);
}

std::string_view verb_of(Outcome outcome) {
    switch (outcome) {
        case Outcome::lost_line:
            return "Line lost";
        case Outcome::stopped:
            return "Stopped";
        default:
            return "Ended";
    }
}

std::string broken_sentence(const Transfer_record& record) {
    std::string text(verb_of(record.outcome));
    if (record.line > 0) {
        text += " at line " + grouped_decimal(record.line) + ", " + record.line_text + ", ";
    } else {
        text += record.bytes > 0 ? " after " : " at the start: ";
    }
    return text + bytes_text(record) + (record.direction == Direction::send ? " of " : " for ") +
           name_of(record.path);
}

std::string_view result_word(Outcome outcome) {
    switch (outcome) {
        case Outcome::done:
            return "done";
        case Outcome::stopped:
            return "stopped";
        case Outcome::refused:
            return "not begun";
        case Outcome::lost_line:
            return "line lost";
        case Outcome::disk_full:
            return "not saved";
        case Outcome::nothing_received:
            return "no text received";
        case Outcome::fault:
            return "fault";
    }
    return {};
}

/// A field of the log: tabs and line ends would begin another one.
std::string field(std::string text) {
    for (char& c : text) {
        c = c == '\n' ? ';' : static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return text;
}

std::string log_line(const Transfer_record& record) {
    const std::string fields[] = {record.when,
                                  record.machine,
                                  record.direction == Direction::send ? "sent" : "received",
                                  record.path,
                                  decimal(record.bytes),
                                  record.lines > 0 ? std::to_string(record.lines) : "",
                                  minutes_and_seconds(record.duration),
                                  std::string(result_word(record.outcome)) +
                                      (record.outcome != Outcome::done && record.line > 0
                                           ? " at line " + std::to_string(record.line)
                                           : ""),
                                  record.remarks};
    std::string line;
    for (const std::string& text : fields) {
        line += (&text == fields ? "" : "\t") + field(text);
    }
    return line + std::string(cr_lf);
}

/// The newer half of a log that has become too long, from the start of a line on.
Result<> shorten(Files& files, const std::string& path) {
    const auto length = files.length(path);
    if (!length || *length <= longest_transfer_log) {
        return {};
    }
    const auto log = files.read(path);
    if (!log) {
        return log.failure();
    }
    const std::size_t line_end = log->find('\n', log->size() / 2);
    return files.replace(path,
                         line_end == std::string::npos ? std::string() : log->substr(line_end + 1));
}

}  // namespace

std::string minutes_and_seconds(Clock_time span) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span).count();
    const std::string rest = std::to_string(seconds % 60);
    return std::to_string(seconds / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

std::string percent_text(const Transfer_record& record) {
    return std::to_string(std::min<std::uint64_t>(record.sent * 100 / record.total, 100)) + " %";
}

std::string progress_text(const Transfer_record& record) {
    std::string text;
    if (record.total > 0) {
        text += percent_text(record) + ", ";
    }
    if (record.lines > 0) {
        text +=
            "line " + grouped_decimal(record.line) + " of " + grouped_decimal(record.lines) + ", ";
    }
    return text + bytes_text(record);
}

std::string result_sentence(const Transfer_record& record) {
    const std::string name = name_of(record.path);
    std::string text;
    if (record.outcome == Outcome::done) {
        text = done_sentence(record);
    } else if (record.outcome == Outcome::refused) {
        text = name + (record.direction == Direction::send ? " was not sent" : " was not received");
    } else {
        text = broken_sentence(record);
    }
    return text + (record.when.empty() ? "" : ", " + record.when);
}

Result<> add_to_transfer_log(Files& files, const Transfer_record& record) {
    const std::string path = files.program_path(file_names::transfer_log);
    return shorten(files, path).and_then([&] { return files.append(path, log_line(record)); });
}

}  // namespace kelvane
