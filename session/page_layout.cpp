#include "session/page_layout.h"

namespace kelvane {

Page_layout page_layout_from(Text_reader reader) {
    Page_layout layout;
    const auto choice = [&reader](bool& set) {
        int number = 0;
        if (reader.field_number(number)) {
            set = number != 0;
        }
    };
    reader.field_number(layout.Lines_per_page);
    choice(layout.Print_description);
    choice(layout.Print_line_numbers);
    choice(layout.Print_page_numbers);
    reader.field_number(layout.line_length);
    reader.field_number(layout.margin);
    reader.field(layout.Printer_font);
    reader.field_number(layout.Printer_fontsize);
    reader.field_flag(layout.Printer_fontbold);
    reader.field_flag(layout.Printer_fontitalic);
    choice(layout.Print_reverse_order);
    choice(layout.Barcode_file);
    choice(layout.Barcode_path);
    return layout;
}

std::string page_layout_text(const Page_layout& layout) {
    Text_writer writer;
    const auto number = [&writer](int value) { writer.line(decimal(value)); };
    const auto choice = [&writer](bool set) { writer.line(set ? "1" : "0"); };
    const auto truth = [&writer](bool set) { writer.line(set ? "#TRUE#" : "#FALSE#"); };
    number(layout.Lines_per_page);
    choice(layout.Print_description);
    choice(layout.Print_line_numbers);
    choice(layout.Print_page_numbers);
    number(layout.line_length);
    number(layout.margin);
    writer.line('"' + layout.Printer_font + '"');
    number(layout.Printer_fontsize);
    truth(layout.Printer_fontbold);
    truth(layout.Printer_fontitalic);
    choice(layout.Print_reverse_order);
    choice(layout.Barcode_file);
    choice(layout.Barcode_path);
    return writer.text();
}

}  // namespace kelvane
