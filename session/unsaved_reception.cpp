#include "session/unsaved_reception.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr std::array<const char*, 3> form_words = {"raw", "text", "binary"};

Result<> write_note(Files& files, const Unsaved_reception& reception) {
    Text_writer note;
    note.line(reception.machine)
        .line(reception.path)
        .line(form_words.at(static_cast<std::size_t>(reception.form)));
    return files.replace(files.program_path(file_names::reception_note), note.text());
}

Result<Unsaved_reception> read_note(const Files& files) {
    const auto content = files.read(files.program_path(file_names::reception_note));
    if (!content) {
        return content.failure();
    }
    const Failure damaged{"It is damaged"};
    Text_reader lines(*content);
    Unsaved_reception reception;
    std::string form;
    if (!lines.line(reception.machine) || !lines.line(reception.path) || !lines.line(form)) {
        return damaged;
    }
    const auto* word = std::find(form_words.begin(), form_words.end(), form);
    if (word == form_words.end()) {
        return damaged;
    }
    reception.form = static_cast<Unsaved_reception::Form>(word - form_words.begin());
    return reception;
}

/// The file with the bytes that a note speaks of; missing when nothing had come.
Result<std::string> received_file(const Files& files, Unsaved_reception::Form form) {
    std::vector<std::string_view> names = {file_names::reception_aside, file_names::scratch};
    if (form == Unsaved_reception::Form::binary) {
        names.push_back(file_names::received_binary);
    }
    for (const auto name : names) {
        const std::string path = files.program_path(name);
        const auto length = files.length(path);
        if (length.unreadable()) {
            return length.failure();
        }
        if (length && *length > 0) {
            return path;
        }
    }
    return Failure{"Nothing had come", true};
}

}  // namespace

Result<> begin_reception(Files& files, const Unsaved_reception& reception) {
    files.remove(files.program_path(file_names::reception_aside));
    return write_note(files, reception);
}

void mark_converted(Files& files) {
    if (auto reception = read_note(files)) {
        reception->form = Unsaved_reception::Form::text;
        // With the old note the operator is asked, and can save the text as it is.
        static_cast<void>(write_note(files, *reception));
    }
}

void forget_reception(Files& files) {
    files.remove(files.program_path(file_names::reception_note));
    files.remove(files.program_path(file_names::reception_aside));
}

Result<Unsaved_reception> unsaved_reception(const Files& files) {
    auto reception = read_note(files);
    if (!reception) {
        return reception;
    }
    const auto file = received_file(files, reception->form);
    if (!file) {
        return file.failure();
    }
    reception->file = *file;
    return reception;
}

Result<> set_reception_aside(Files& files) {
    const auto note = read_note(files);
    const auto received = received_file(files, note ? note->form : Unsaved_reception::Form::binary);
    if (note.missing() || received.missing()) {
        forget_reception(files);
        return {};
    }
    if (!received) {
        return received.failure();
    }
    const std::string staged = files.program_path(file_names::scratch);
    return *received == staged
               ? files.rename(staged, files.program_path(file_names::reception_aside))
               : Result<>();
}

}  // namespace kelvane
