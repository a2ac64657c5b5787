#include "session/transfer_record.h"

#include <algorithm>
#include <chrono>

#include "platform/basic_text.h"
#include "platform/files.h"

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
                       (send ? " to " : " from ") + record.machine + beginning(record) + ": ";
    text += grouped_decimal(static_cast<std::uint64_t>(record.bytes)) + " bytes";
    if (const std::size_t lines = lines_to_send(record); lines > 0) {
        text += ", " + grouped_decimal(lines) + (lines == 1 ? " line" : " lines");
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
           name_of(record.path) + beginning(record);
}

}  // namespace

std::size_t lines_to_send(const Transfer_record& record) {
    return record.first_line == 0 ? record.lines : record.lines - (record.first_line - 1);
}

std::string beginning(const Transfer_record& record) {
    return record.first_line == 0 ? std::string()
                                  : ", from line " + grouped_decimal(record.first_line);
}

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
    if (record.total > 0 && record.lines > 0) {
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

}  // namespace kelvane
