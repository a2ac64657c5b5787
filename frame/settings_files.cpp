#include "frame/settings_files.h"

#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

Text_reader reader_of(const Files& files, std::string_view name) {
    return Text_reader(files.read(files.program_path(name)));
}

void set_page_layout_defaults(Shared_state& state) {
    const Shared_state defaults;
    state.Print_description = defaults.Print_description;
    state.Print_line_numbers = defaults.Print_line_numbers;
    state.Print_page_numbers = defaults.Print_page_numbers;
    state.Lines_per_page = defaults.Lines_per_page;
    state.line_length = defaults.line_length;
    state.margin = defaults.margin;
    state.Printer_fontsize = defaults.Printer_fontsize;
    state.Printer_font = defaults.Printer_font;
    state.Printer_fontbold = defaults.Printer_fontbold;
    state.Printer_fontitalic = defaults.Printer_fontitalic;
    state.Print_first_page_only = defaults.Print_first_page_only;
    state.Barcode_file = defaults.Barcode_file;
    state.Barcode_path = defaults.Barcode_path;
}

}  // namespace

void read_selected_machine(const Files& files, Shared_state& state) {
    state.IO_device_name = default_machine;
    state.IO_device = 0;
    Text_reader reader = reader_of(files, file_names::settings);
    reader.line_number(state.IO_device);
    reader.line(state.IO_device_name);
}

void read_default_directories(const Files& files, Shared_state& state, File_dialog& dialog) {
    Text_reader reader = reader_of(files, file_names::default_directories);
    if (reader.line(state.default_path)) {
        dialog.initial_directory = state.default_path;
    }
}

void read_default_file_types(const Files& files, Shared_state& state, File_dialog& dialog) {
    Text_reader reader = reader_of(files, file_names::default_file_types);
    if (reader.line(state.file_types)) {
        dialog.filter = state.file_types;
    }
    reader.line(state.file_types_second);
    reader.line_number(dialog.filter_index);
    reader.line_number(state.Add_extension);
}

void read_page_layout(const Files& files, Shared_state& state) {
    set_page_layout_defaults(state);
    Text_reader reader = reader_of(files, file_names::page_layout);
    reader.field_number(state.Lines_per_page);
    reader.field_number(state.Print_description);
    reader.field_number(state.Print_line_numbers);
    reader.field_number(state.Print_page_numbers);
    reader.field_number(state.line_length);
    reader.field_number(state.margin);
    reader.field(state.Printer_font);
    reader.field_number(state.Printer_fontsize);
    reader.field_flag(state.Printer_fontbold);
    reader.field_flag(state.Printer_fontitalic);
    reader.field_number(state.Print_reverse_order);
    reader.field_number(state.Barcode_file);
    reader.field_number(state.Barcode_path);
}

Result<> write_selected_machine(Files& files, const Shared_state& state) {
    Text_writer writer;
    writer.line(decimal(state.IO_device)).line(state.IO_device_name);
    return files.replace(files.program_path(file_names::settings), writer.text());
}

}  // namespace kelvane
