#include "frame/settings_files.h"

#include <utility>

#include "platform/basic_text.h"
#include "print/page_layout_fields.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

Text_reader reader_of(const Files& files, std::string_view name, Shared_state& state) {
    auto content = files.read(files.program_path(name));
    if (content.unreadable()) {
        state.unread_files.emplace(name);
    }
    return Text_reader(std::move(content));
}

}  // namespace

void read_selected_machine(const Files& files, Shared_state& state) {
    state.IO_device_name = default_machine;
    state.IO_device = 0;
    Text_reader reader = reader_of(files, file_names::settings, state);
    reader.line_number(state.IO_device);
    reader.line(state.IO_device_name);
}

void read_default_directories(const Files& files, Shared_state& state, File_dialog& dialog) {
    Text_reader reader = reader_of(files, file_names::default_directories, state);
    if (reader.line(state.default_path)) {
        dialog.initial_directory = state.default_path;
    }
}

void read_default_file_types(const Files& files, Shared_state& state, File_dialog& dialog) {
    Text_reader reader = reader_of(files, file_names::default_file_types, state);
    if (reader.line(state.file_types)) {
        dialog.filter = state.file_types;
    }
    std::string second;  // of no use to anybody
    reader.line(second);
    reader.line_number(dialog.filter_index);
    reader.line_number(state.Add_extension);
}

void read_page_layout(const Files& files, Shared_state& state) {
    state.page_layout = page_layout_from(reader_of(files, file_names::page_layout, state));
    state.Print_first_page_only = 0;
}

Result<> write_selected_machine(Files& files, const Shared_state& state) {
    if (state.unread_files.contains(file_names::settings)) {
        return {};
    }
    Text_writer writer;
    writer.line(decimal(state.IO_device)).line(state.IO_device_name);
    return files.replace(files.program_path(file_names::settings), writer.text());
}

}  // namespace kelvane
