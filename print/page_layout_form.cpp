#include "print/page_layout_form.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"
#include "print/page_layout_fields.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr int picture_barcode_rows = 6;

std::string range_text(Value_range range) {
    return "A whole number from " + decimal(range.lowest) + " to " + decimal(range.highest);
}

/// A program that fills a page of any layout, with a long line now and then.
std::string sample_program() {
    std::string text = "%\nO1000 (SAMPLE)\n";
    for (std::int64_t block = 1; block <= lines_per_page_range.highest; ++block) {
        text += "N" + decimal(block * 10) + " G01 X" + decimal(block) + ".5 Y-20. F200";
        constexpr int long_every = 9;
        text += block % long_every == 0 ? " (" + std::string(100, 'X') + ")\n" : "\n";
    }
    return text;
}

std::vector<std::string> rows_of(const std::string& page) {
    std::vector<std::string> rows;
    Text_reader reader(page);
    for (std::string row; reader.line(row);) {
        rows.push_back(row);
    }
    return rows;
}

}  // namespace

std::optional<int> Number_field::number() const {
    constexpr std::size_t most_digits = 4;
    const std::string& text = box.text();
    if (text.empty() || text.size() > most_digits ||
        !std::all_of(text.begin(), text.end(), is_digit)) {
        return std::nullopt;
    }
    const int value = whole_number(text);
    const bool taken = value >= range.lowest && value <= range.highest;
    return taken ? std::optional(value) : std::nullopt;
}

void Page_picture::set_page(Page_sketch page) {
    page_ = std::move(page);
    changed();
}

Page_layout_form_lite::Page_layout_form_lite(Platform& platform, Operator& op, Shared_state& state,
                                             Program_listing& listing)
    : Form(platform.windows, "Page_layout_form_lite", "Page layout"),
      platform_(platform),
      printer_(platform.printer),
      op_(op),
      state_(state),
      listing_(listing),
      tasks_(platform.loop) {
    Printer_font_reason.plain = true;
    attach_handlers();
}

std::array<Number_field*, 4> Page_layout_form_lite::number_fields() {
    return {&Lines_per_page, &line_length, &margin, &Printer_fontsize};
}

void Page_layout_form_lite::attach_handlers() {
    const auto changed = [this] { values_changed(); };
    for (Number_field* field : number_fields()) {
        field->box.accepts_key = is_digit;
        field->box.selects_all_on_focus = true;
        field->box.on_change = changed;
    }
    Printer_font.on_change = changed;
    Printer_font_list.on_mouse_down = [this] {
        Printer_font.set_text(Printer_font_list.selected_text());
    };
    for (Check_box* box : {&Printer_fontbold, &Printer_fontitalic, &Print_description,
                           &Print_line_numbers, &Print_page_numbers, &Print_reverse_order}) {
        box->on_click = changed;
    }
    make_exclusive(Barcode_file, Barcode_path);
    make_exclusive(Barcode_path, Barcode_file);
    Preview_button.on_click = [this] { tasks_.start(preview()); };
    Defaults_button.on_click = [this] { show_layout(Page_layout{}); };
    OK_button.on_click = [this] { tasks_.start(accept()); };
    Cancel_button.on_click = [this] { unload(); };
}

void Page_layout_form_lite::make_exclusive(Check_box& one, Check_box& other) {
    one.on_click = [this, &one, &other] {
        if (one.checked()) {
            other.set_checked(false);
        }
        values_changed();
    };
}

void Page_layout_form_lite::on_load() {
    preview_path_.clear();
    Printer_font_list.set_items(printer_.fixed_fonts());
    show_layout(state_.page_layout);
}

void Page_layout_form_lite::show_layout(const Page_layout& layout) {
    showing_ = true;
    for (const Page_layout_field& field : page_layout_fields) {
        field.show(*this, layout);
    }
    showing_ = false;
    values_changed();
}

std::optional<Page_layout> Page_layout_form_lite::checked_layout() const {
    Page_layout layout;
    bool complete = true;
    for (const Page_layout_field& field : page_layout_fields) {
        complete = field.take(*this, layout) && complete;
    }
    return complete ? std::optional(layout) : std::nullopt;
}

bool Page_layout_form_lite::font_can_be_named() const {
    const std::string& name = Printer_font.text();
    return name.find_first_not_of(' ') != std::string::npos &&
           std::none_of(name.begin(), name.end(),
                        [](char c) { return c == '"' || (c >= '\0' && c < ' '); });
}

std::string Page_layout_form_lite::font_reason() const {
    if (!font_can_be_named()) {
        return "The name of a font, without double quotes";
    }
    return printer_.font_available(Printer_font.text())
               ? std::string()
               : "Not installed here; a font of fixed width is used in its place";
}

void Page_layout_form_lite::values_changed() {
    if (showing_) {
        return;
    }
    for (Number_field* field : number_fields()) {
        const bool taken = field->number().has_value();
        field->reason.set_caption(taken ? std::string() : range_text(field->range));
    }
    Printer_font_reason.set_caption(font_reason());
    preview_hint.set_caption({});
    if (const auto layout = checked_layout()) {
        draw(*layout);
    }
}

void Page_layout_form_lite::draw(const Page_layout& layout) {
    const Desktop_services& desktop = platform_.desktop;
    const std::string now = desktop.date_text() + " " + desktop.time_text();
    const Listing listing =
        compose_listing({sample_program(), platform_.files.program_path("\\SAMPLE.NC"), now, now},
                        layout, layout.wants_barcode());
    if (!listing.pages.empty()) {
        picture.set_page({rows_of(listing.pages.front()), listing_columns(layout),
                          layout.wants_barcode() ? picture_barcode_rows : 0,
                          layout.Printer_fontsize});
    }
}

Task<> Page_layout_form_lite::accept() {
    const auto layout = checked_layout();
    if (!layout) {
        co_return;
    }
    if (state_.unread_files.contains(file_names::page_layout)) {
        const Task<Message_answer> box = op_.box(
            "The page layout could not be read when the program was started.\n"
            "It is not written over. Start the program again.");
        co_await box;
        co_return;
    }
    Files& files = platform_.files;
    const std::string path = files.program_path(file_names::page_layout);
    if (const auto written = files.replace(path, page_layout_text(*layout)); !written) {
        const Task<Message_answer> box =
            op_.box("Can't write the page layout\n" + written.reason());
        co_await box;
        co_return;
    }
    state_.page_layout = *layout;
    unload();
}

Task<> Page_layout_form_lite::preview() {
    const auto layout = checked_layout();
    if (!layout || !listing_.may_start()) {
        preview_hint.set_caption(layout ? "Not while a transfer or a listing is going on"
                                        : "Correct the values first");
        co_return;
    }
    const auto path = co_await preview_path();
    if (path) {
        preview_hint.set_caption({});
        co_await listing_.Preview_listing(*path, *layout);
    }
}

Task<std::optional<std::string>> Page_layout_form_lite::preview_path() {
    for (const std::string& path : {state_.filename, preview_path_}) {
        if (platform_.files.exists(path)) {
            co_return path;
        }
    }
    const auto chosen = co_await platform_.file_dialog.ask_file(File_purpose::open);
    if (!chosen || !platform_.files.exists(*chosen)) {
        co_return std::nullopt;
    }
    preview_path_ = *chosen;
    co_return preview_path_;
}

}  // namespace kelvane
