#include "print/program_listing.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"
#include "print/code39.h"

namespace kelvane {

namespace {

constexpr const char* barcode_font = "Code39OneInchTT-Regular";
/// A bar code takes two rows and its text one; the composition leaves room for six rows in all.
constexpr int bar_rows = 2;
constexpr int barcode_block_rows = 2 * (bar_rows + 1);

/// Settings files may hold any number.
int font_points(const Page_layout& layout) {
    constexpr int largest = 400;
    return std::clamp(layout.Printer_fontsize, 1, largest);
}

}  // namespace

Program_listing::Program_listing(Kelvane_lite_form& window, Printer& printer)
    : window_(window), printer_(printer) {}

void Program_listing::Print_listing() {
    run(window_.state.filename, window_.state.page_layout, Print_destination::paper);
    window_.state.Print_first_page_only = 0;
}

void Program_listing::Preview_listing(const std::string& path, const Page_layout& layout) {
    if (may_start()) {
        run(path, layout, Print_destination::preview);
    }
}

bool Program_listing::may_start() const {
    return window_.control.may_start_work();
}

void Program_listing::run(const std::string& path, const Page_layout& layout,
                          Print_destination destination) {
    if (!window_.platform.files.exists(path)) {
        return;
    }
    const Transfer_control::Work at_work(window_.control);
    layout_ = layout;
    begin_display();
    if (const auto listing = compose(path)) {
        output(*listing, path, destination);
    }
    end_display();
}

std::optional<Listing> Program_listing::compose(const std::string& path) {
    auto content = window_.platform.files.read(path);
    if (!content) {
        say(content.reason());
        return std::nullopt;
    }
    printer_.set_font_size(layout_.Printer_fontsize == 10 ? 12 : 10);
    Test_barcode(barcode_font_);
    set_listing_font();
    Listing listing =
        compose_listing(source_of(path, std::move(*content)), layout_,
                        barcode_font_ || prints_barcode(path), [this] { return proceed(); });
    if (listing.fault) {
        say(std::string(fault_text(*listing.fault)));
    }
    if (listing.fault || listing.stopped) {
        return std::nullopt;
    }
    return listing;
}

Listing_source Program_listing::source_of(const std::string& path, std::string content) const {
    const Desktop_services& desktop = window_.platform.desktop;
    const auto stamp = window_.platform.files.stamp(path);
    return {std::move(content), path, stamp ? desktop.stamp_text(*stamp) : std::string(),
            desktop.date_text() + " " + desktop.time_text()};
}

void Program_listing::output(const Listing& listing, const std::string& path,
                             Print_destination destination) {
    if (!printer_.begin_document(name_of(path), destination)) {
        say(printer_.last_error());
        return;
    }
    const int barcode_rows = prints_barcode(path) ? barcode_block_rows : 0;
    printer_.fit_page(listing_rows(listing, layout_, barcode_rows), listing_columns(layout_));
    const bool printed = print_pages(listing, path) && printer_.end_document();
    if (!printed) {
        printer_.abort_document();
        if (!stop_asked()) {
            say(printer_.last_error());
        }
    } else if (destination == Print_destination::paper) {
        window_.set_note("Listing sent to " + printer_.destination_name());
    }
}

bool Program_listing::print_pages(const Listing& listing, const std::string& path) {
    const std::size_t last = listing.pages.size();
    if (layout_.Print_reverse_order) {
        for (std::size_t number = last; number > 1; --number) {
            if (!print_page(listing, number) || !printer_.new_page()) {
                return false;
            }
        }
        return print_first_page(listing, path);
    }
    if (!print_first_page(listing, path)) {
        return false;
    }
    for (std::size_t number = 2; number <= last; ++number) {
        if (!printer_.new_page() || !print_page(listing, number)) {
            return false;
        }
    }
    return true;
}

bool Program_listing::print_first_page(const Listing& listing, const std::string& path) {
    return Print_barcode(path) && print_page(listing, 1);
}

bool Program_listing::print_page(const Listing& listing, std::size_t number) {
    window_.show_text("Printing page" + Str(static_cast<std::int64_t>(number)));
    return proceed() && printer_.print(listing.pages[number - 1]);
}

void Program_listing::Test_barcode(bool& available) {
    printer_.set_font_name(barcode_font);
    available = printer_.font_available(barcode_font);
}

std::string Program_listing::barcode_text(const std::string& path) const {
    return layout_.Barcode_path ? barcode_path_text(path) : barcode_file_text(path);
}

bool Program_listing::prints_barcode(const std::string& path) const {
    return layout_.wants_barcode() && (barcode_font_ || printer_.can_draw_barcodes()) &&
           characters_without_barcode(barcode_text(path)).empty();
}

bool Program_listing::Print_barcode(const std::string& path) {
    if (!layout_.wants_barcode()) {
        return true;
    }
    if (!barcode_font_ && !printer_.can_draw_barcodes()) {
        window_.box_now("Can't print barcode\nBarcode font not installed");
        return true;
    }
    const std::string text = barcode_text(path);
    if (const std::string missing = characters_without_barcode(text); !missing.empty()) {
        window_.box_now("Can't print barcode\nCode 39 has no bars for these characters:  " +
                        missing);
        return true;
    }
    for (const char* command : {"GET-", "PUT-"}) {
        const Bars bars = print_bars(command + text);
        if (bars == Bars::refused) {
            window_.box_now("Can't print barcode\n" + printer_.last_error());
            return true;
        }
        if (bars == Bars::failed || !printer_.print(margin() + "*" + command + text + "*\n")) {
            return false;
        }
    }
    return true;
}

Program_listing::Bars Program_listing::print_bars(const std::string& text) {
    if (!barcode_font_) {
        return printer_.draw_barcode(text, bar_rows, listing_margin(layout_)) ? Bars::printed
                                                                              : Bars::refused;
    }
    bool printed = printer_.print(margin());
    printer_.set_font_name(barcode_font);
    printer_.set_font_size(bar_rows * font_points(layout_));
    printer_.set_font_bold(false);
    printer_.set_font_italic(false);
    printed = printed && printer_.print("*" + text + "*\n");
    set_listing_font();
    return printed ? Bars::printed : Bars::failed;
}

std::string Program_listing::margin() const {
    std::string blanks;
    blanks.resize(static_cast<std::size_t>(listing_margin(layout_)), ' ');
    return blanks;
}

void Program_listing::set_listing_font() {
    printer_.set_font_name(layout_.Printer_font);
    printer_.set_font_size(font_points(layout_));
    printer_.set_font_bold(layout_.Printer_fontbold);
    printer_.set_font_italic(layout_.Printer_fontitalic);
}

void Program_listing::begin_display() {
    window_.control.begin_stoppable_work();
}

void Program_listing::end_display() {
    window_.control.end_stoppable_work();
    window_.show_text({});
}

bool Program_listing::proceed() {
    window_.platform.loop.process_pending();
    return !stop_asked();
}

bool Program_listing::stop_asked() const {
    return window_.control.stop_asked();
}

void Program_listing::say(const std::string& reason) {
    window_.box_now("Can't print listing\n" + reason);
}

}  // namespace kelvane
