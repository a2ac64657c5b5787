#include "print/page_layout_fields.h"

#include "print/page_layout_form.h"

namespace kelvane {

namespace {

using Field = Page_layout_field;
using Dialog = Page_layout_form_lite;
using Layout = Page_layout;

template <int Layout::*Member, Number_field Dialog::*Box>
constexpr Field number_row() {
    return {[](Text_reader& reader, Layout& layout) { reader.field_number(layout.*Member); },
            [](const Layout& layout) { return decimal(layout.*Member); },
            [](Dialog& form, const Layout& layout) {
                (form.*Box).box.set_text(decimal(layout.*Member));
            },
            [](const Dialog& form, Layout& layout) {
                const auto number = (form.*Box).number();
                layout.*Member = number.value_or(layout.*Member);
                return number.has_value();
            }};
}

template <bool Layout::*Member, Check_box Dialog::*Box>
constexpr Field check_row(decltype(Field::read) read, decltype(Field::text) text) {
    return {read, text,
            [](Dialog& form, const Layout& layout) { (form.*Box).set_checked(layout.*Member); },
            [](const Dialog& form, Layout& layout) {
                layout.*Member = (form.*Box).checked();
                return true;
            }};
}

template <bool Layout::*Member, Check_box Dialog::*Box>
constexpr Field choice_row() {
    return check_row<Member, Box>(
        [](Text_reader& reader, Layout& layout) {
            int number = layout.*Member ? 1 : 0;
            reader.field_number(number);
            layout.*Member = number != 0;
        },
        [](const Layout& layout) { return std::string(layout.*Member ? "1" : "0"); });
}

template <bool Layout::*Member, Check_box Dialog::*Box>
constexpr Field truth_row() {
    return check_row<Member, Box>(
        [](Text_reader& reader, Layout& layout) { reader.field_flag(layout.*Member); },
        [](const Layout& layout) { return std::string(layout.*Member ? "#TRUE#" : "#FALSE#"); });
}

constexpr Field font_row = {
    [](Text_reader& reader, Layout& layout) { reader.field(layout.Printer_font); },
    [](const Layout& layout) { return '"' + layout.Printer_font + '"'; },
    [](Dialog& form, const Layout& layout) { form.Printer_font.set_text(layout.Printer_font); },
    [](const Dialog& form, Layout& layout) {
        layout.Printer_font = form.Printer_font.text();
        return form.font_can_be_named();
    }};

}  // namespace

constexpr std::array<Page_layout_field, 13> page_layout_fields = {{
    number_row<&Layout::Lines_per_page, &Dialog::Lines_per_page>(),
    choice_row<&Layout::Print_description, &Dialog::Print_description>(),
    choice_row<&Layout::Print_line_numbers, &Dialog::Print_line_numbers>(),
    choice_row<&Layout::Print_page_numbers, &Dialog::Print_page_numbers>(),
    number_row<&Layout::line_length, &Dialog::line_length>(),
    number_row<&Layout::margin, &Dialog::margin>(),
    font_row,
    number_row<&Layout::Printer_fontsize, &Dialog::Printer_fontsize>(),
    truth_row<&Layout::Printer_fontbold, &Dialog::Printer_fontbold>(),
    truth_row<&Layout::Printer_fontitalic, &Dialog::Printer_fontitalic>(),
    choice_row<&Layout::Print_reverse_order, &Dialog::Print_reverse_order>(),
    choice_row<&Layout::Barcode_file, &Dialog::Barcode_file>(),
    choice_row<&Layout::Barcode_path, &Dialog::Barcode_path>(),
}};

Page_layout page_layout_from(Text_reader reader) {
    Page_layout layout;
    for (const Page_layout_field& field : page_layout_fields) {
        field.read(reader, layout);
    }
    return layout;
}

std::string page_layout_text(const Page_layout& layout) {
    Text_writer writer;
    for (const Page_layout_field& field : page_layout_fields) {
        writer.line(field.text(layout));
    }
    return writer.text();
}

}  // namespace kelvane
