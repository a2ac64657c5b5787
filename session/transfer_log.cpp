#include "session/transfer_log.h"

#include <algorithm>
#include <sstream>

#include "platform/basic_text.h"
#include "platform/letter_case.h"
#include "platform/lines.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

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
                                  record.lines > 0 ? std::to_string(lines_to_send(record)) : "",
                                  minutes_and_seconds(record.duration),
                                  std::string(result_word(record.outcome)) +
                                      (record.outcome != Outcome::done && record.line > 0
                                           ? " at line " + std::to_string(record.line)
                                           : "") +
                                      beginning(record),
                                  record.remarks};
    std::string line;
    for (const std::string& text : fields) {
        line += (&text == fields ? "" : "\t") + field(text);
    }
    return line + std::string(cr_lf);
}

/// The newer half of a log that has become too long, from the start of a line on if one is there.
Result<> shorten(Files& files, const std::string& path) {
    const auto length = files.length(path);
    if (!length || *length <= longest_transfer_log) {
        return {};
    }
    const auto log = files.read(path);
    if (!log) {
        return log.failure();
    }
    const std::size_t half = log->size() / 2;
    const std::size_t line_end = log->find('\n', half);
    return files.replace(path, log->substr(line_end == std::string::npos ? half : line_end + 1));
}

/// What ends the line that a power cut has left without an end.
std::string_view missing_line_end(const Files& files, const std::string& path) {
    const std::uint64_t length = files.length(path).value_or(std::uint64_t{0});
    if (length == 0) {
        return {};
    }
    const auto last = files.read_part(path, length - 1, 1);
    return last && *last != "\n" ? cr_lf : std::string_view();
}

Logged_transfer split_at_tabs(std::string_view line) {
    Logged_transfer fields;
    for (std::size_t i = 0; i < transfer_log_columns.size(); ++i) {
        const std::size_t tab = line.find('\t');
        fields.emplace_back(line.substr(0, tab));
        line.remove_prefix(tab == std::string_view::npos ? line.size() : tab + 1);
    }
    return fields;
}

bool has_word(const Logged_transfer& transfer, const std::u32string& word) {
    return std::any_of(transfer.begin(), transfer.end(), [&](const std::string& field) {
        return small_letters(field).find(word) != std::u32string::npos;
    });
}

std::string quoted(const std::string& field) {
    std::string text = "\"";
    for (const char c : field) {
        text += c == '"' ? "\"\"" : std::string(1, c);
    }
    return text + "\"";
}

std::string comma_separated_line(const Logged_transfer& fields) {
    std::string line;
    for (const std::string& field : fields) {
        line += (line.empty() ? "" : ",") + quoted(field);
    }
    return line + std::string(cr_lf);
}

}  // namespace

Result<> add_to_transfer_log(Files& files, const Transfer_record& record) {
    const std::string path = files.program_path(file_names::transfer_log);
    return shorten(files, path).and_then([&] {
        return files.append(path, std::string(missing_line_end(files, path)) + log_line(record));
    });
}

Result<std::vector<Logged_transfer>> read_transfer_log(const Files& files) {
    const auto log = files.read(files.program_path(file_names::transfer_log));
    std::vector<Logged_transfer> transfers;
    if (log.missing()) {
        return transfers;
    }
    if (!log) {
        return log.failure();
    }
    for (Lines lines(*log); !lines.at_end();) {
        if (const auto line = lines.take(); !line.empty()) {
            transfers.push_back(split_at_tabs(line));
        }
    }
    std::reverse(transfers.begin(), transfers.end());
    return transfers;
}

std::vector<Logged_transfer> transfers_with(const std::vector<Logged_transfer>& transfers,
                                            std::string_view words) {
    std::vector<Logged_transfer> found = transfers;
    std::istringstream wanted{std::string(words)};
    for (std::string word; wanted >> word;) {
        std::erase_if(found, [letters = small_letters(word)](const Logged_transfer& one) {
            return !has_word(one, letters);
        });
    }
    return found;
}

std::string comma_separated(const std::vector<Logged_transfer>& transfers) {
    std::string text =
        comma_separated_line({transfer_log_columns.begin(), transfer_log_columns.end()});
    for (const Logged_transfer& transfer : transfers) {
        text += comma_separated_line(transfer);
    }
    return text;
}

}  // namespace kelvane
