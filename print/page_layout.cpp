#include "print/page_layout.h"

#include "platform/basic_text.h"

namespace kelvane {

Page_layout page_layout_of(const Shared_state& state) {
    return {
        .lines_per_page = state.Lines_per_page,
        .description = state.Print_description != 0,
        .line_numbers = state.Print_line_numbers != 0,
        .page_numbers = state.Print_page_numbers != 0,
        .line_length = state.line_length,
        .margin = state.margin,
        .font = state.Printer_font,
        .font_size = state.Printer_fontsize,
        .bold = state.Printer_fontbold,
        .italic = state.Printer_fontitalic,
        .reverse_order = state.Print_reverse_order != 0,
        .barcode_file = state.Barcode_file != 0,
        .barcode_path = state.Barcode_path != 0,
    };
}

void set_page_layout(Shared_state& state, const Page_layout& layout) {
    state.Lines_per_page = layout.lines_per_page;
    state.Print_description = layout.description ? 1 : 0;
    state.Print_line_numbers = layout.line_numbers ? 1 : 0;
    state.Print_page_numbers = layout.page_numbers ? 1 : 0;
    state.line_length = layout.line_length;
    state.margin = layout.margin;
    state.Printer_font = layout.font;
    state.Printer_fontsize = layout.font_size;
    state.Printer_fontbold = layout.bold;
    state.Printer_fontitalic = layout.italic;
    state.Print_reverse_order = layout.reverse_order ? 1 : 0;
    state.Barcode_file = layout.barcode_file ? 1 : 0;
    state.Barcode_path = layout.barcode_path ? 1 : 0;
}

std::string page_layout_text(const Page_layout& layout) {
    Text_writer writer;
    const auto number = [&writer](int value) { writer.line(decimal(value)); };
    const auto choice = [&writer](bool set) { writer.line(set ? "1" : "0"); };
    const auto truth = [&writer](bool set) { writer.line(set ? "#TRUE#" : "#FALSE#"); };
    number(layout.lines_per_page);
    choice(layout.description);
    choice(layout.line_numbers);
    choice(layout.page_numbers);
    number(layout.line_length);
    number(layout.margin);
    writer.line('"' + layout.font + '"');
    number(layout.font_size);
    truth(layout.bold);
    truth(layout.italic);
    choice(layout.reverse_order);
    choice(layout.barcode_file);
    choice(layout.barcode_path);
    return writer.text();
}

}  // namespace kelvane
