#include "session/unsaved_reception.h"

#include <algorithm>
#include <array>

#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr std::array<const char*, 3> form_words = {"raw", "text", "binary"};

void write_note(Files& files, const Unsaved_reception& reception) {
    Text_writer note;
    note.line(reception.machine)
        .line(reception.path)
        .line(form_words.at(static_cast<std::size_t>(reception.form)));
    // Without the note the bytes are where they are all the same.
    static_cast<void>(files.replace(files.program_path(file_names::reception_note), note.text()));
}

std::optional<Unsaved_reception> read_note(const Files& files) {
    const auto content = files.read(files.program_path(file_names::reception_note));
    if (!content) {
        return std::nullopt;
    }
    Text_reader lines(*content);
    Unsaved_reception reception;
    std::string form;
    if (!lines.line(reception.machine) || !lines.line(reception.path) || !lines.line(form)) {
        return std::nullopt;
    }
    const auto* word = std::find(form_words.begin(), form_words.end(), form);
    if (word == form_words.end()) {
        return std::nullopt;
    }
    reception.form = static_cast<Unsaved_reception::Form>(word - form_words.begin());
    return reception;
}

bool holds_something(const Files& files, const std::string& path) {
    return files.length(path).value_or(std::uint64_t{0}) > 0;
}

}  // namespace

void begin_reception(Files& files, const Unsaved_reception& reception) {
    files.remove(files.program_path(file_names::reception_aside));
    write_note(files, reception);
}

void mark_converted(Files& files) {
    if (auto reception = read_note(files)) {
        reception->form = Unsaved_reception::Form::text;
        write_note(files, *reception);
    }
}

void forget_reception(Files& files) {
    files.remove(files.program_path(file_names::reception_note));
    files.remove(files.program_path(file_names::reception_aside));
}

std::optional<Unsaved_reception> unsaved_reception(const Files& files) {
    auto reception = read_note(files);
    if (!reception) {
        return std::nullopt;
    }
    for (const auto name : {file_names::reception_aside, file_names::scratch}) {
        reception->file = files.program_path(name);
        if (holds_something(files, reception->file)) {
            return reception;
        }
    }
    reception->file = files.program_path(file_names::received_binary);
    return reception->form == Unsaved_reception::Form::binary &&
                   holds_something(files, reception->file)
               ? reception
               : std::nullopt;
}

Result<> set_reception_aside(Files& files) {
    const auto reception = unsaved_reception(files);
    const std::string staged = files.program_path(file_names::scratch);
    if (!reception) {
        forget_reception(files);
        return {};
    }
    return reception->file == staged
               ? files.rename(staged, files.program_path(file_names::reception_aside))
               : Result<>();
}

}  // namespace kelvane
