#include "print/program_listing.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <utility>

#include "platform/basic_text.h"
#include "platform/tape_image.h"
#include "print/code39.h"

namespace kelvane {

namespace {

constexpr const char* barcode_font = "Code39OneInchTT-Regular";
/// A bar code takes two rows and its text one; the composition leaves room for six rows in all.
constexpr int bar_rows = 2;
constexpr int barcode_block_rows = 2 * (bar_rows + 1);

std::time_t seconds_of(File_time time) {
    return std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
}

/// Settings files may hold any number.
int font_points(const Page_layout& layout) {
    constexpr int largest = 400;
    return std::clamp(layout.Printer_fontsize, 1, largest);
}

}  // namespace

/// What the operator sees of a listing in work: Stop is live, and the log follows the pages.
class Program_listing::Display {
  public:
    Display(Operator& op, Transfer_control& control) : op_(op), control_(control) {
        control_.begin_stoppable_work();
    }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    ~Display() {
        control_.end_stoppable_work();
        op_.show_text({});
    }

  private:
    Operator& op_;
    Transfer_control& control_;
};

/// A document is dropped, unless it has come to its end.
class Program_listing::Document {
  public:
    explicit Document(Printer& printer) : printer_(printer) {}
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() { printer_.abort_document(); }

  private:
    Printer& printer_;
};

Program_listing::Program_listing(Platform& platform, Operator& op, Transfer_control& control,
                                 Shared_state& state)
    : platform_(platform), printer_(platform.printer), op_(op), control_(control), state_(state) {}

Task<bool> Program_listing::Print_listing() {
    const bool printed =
        co_await run(state_.filename, state_.page_layout, Print_destination::paper);
    state_.Print_first_page_only = 0;
    co_return printed;
}

Task<> Program_listing::Preview_listing(std::string path, Page_layout layout) {
    if (may_start()) {
        co_await run(path, layout, Print_destination::preview);
    }
}

bool Program_listing::may_start() const {
    return control_.may_start_work();
}

Task<bool> Program_listing::run(std::string path, Page_layout layout,
                                Print_destination destination) {
    if (!platform_.files.exists(path)) {
        co_return false;
    }
    const Transfer_control::Work at_work(control_);
    layout_ = layout;
    std::optional<Display> display(std::in_place, op_, control_);
    const std::optional<Listing> listing = co_await compose(path);
    if (!listing) {
        co_return false;
    }
    const Document document(printer_);
    Result<> printed = co_await print_document(*listing, path, destination);
    if (printed) {
        display.reset();  // a preview is no work that Stop ends
        printed = co_await printer_.end_document();
    }
    if (!printed && !control_.stop_asked()) {
        co_await say(printed.reason());
    } else if (printed && destination == Print_destination::paper) {
        const std::string file = printer_.destination_file();
        op_.set_note("Listing sent to " + (file.empty() ? printer_.destination_name() : file));
        op_.offer_file(file);
    }
    co_return printed.has_value();
}

Task<std::optional<Listing>> Program_listing::compose(std::string path) {
    auto content = platform_.files.read(path);
    if (!content) {
        co_await say(content.reason());
        co_return std::nullopt;
    }
    printer_.set_font_size(layout_.Printer_fontsize == 10 ? 12 : 10);
    Test_barcode(barcode_font_);
    set_listing_font();
    Listing_source source = source_of(path, working_copy(std::move(*content)));
    std::function<bool()> stop_asked = [this] { return control_.stop_asked(); };
    const bool barcode_room = barcode_font_ || prints_barcode(path);
    std::optional<Listing> listing = co_await compose_listing(
        platform_.loop, std::move(source), layout_, barcode_room, std::move(stop_asked));
    if (listing && listing->fault) {
        co_await say(std::string(fault_text(*listing->fault)));
        co_return std::nullopt;
    }
    co_return listing;
}

Listing_source Program_listing::source_of(const std::string& path, std::string content) const {
    const Desktop_services& desktop = platform_.desktop;
    const auto stamp = platform_.files.stamp(path);
    return {std::move(content), path,
            stamp ? desktop.stamp_text(seconds_of(*stamp)) : std::string(),
            desktop.date_text() + " " + desktop.time_text()};
}

Task<Result<>> Program_listing::print_document(const Listing& listing, std::string path,
                                               Print_destination destination) {
    if (const auto begun = printer_.begin_document(name_of(path), destination); !begun) {
        co_return begun;
    }
    const int barcode_rows = prints_barcode(path) ? barcode_block_rows : 0;
    printer_.fit_page(listing_rows(listing, layout_, barcode_rows), listing_columns(layout_));
    const std::size_t pages = listing.pages.size();
    for (std::size_t printed = 0; printed < pages; ++printed) {
        Result<> page;
        if (printed > 0) {
            page = printer_.new_page();
        }
        if (page) {
            const std::size_t number = layout_.Print_reverse_order ? pages - printed : printed + 1;
            page = co_await print_page(listing, number, path);
        }
        if (!page) {
            co_return page;
        }
    }
    co_return Result<>();
}

Task<Result<>> Program_listing::print_page(const Listing& listing, std::size_t number,
                                           std::string path) {
    if (number == 1) {
        const Result<> barcode = co_await Print_barcode(path);
        if (!barcode) {
            co_return barcode;
        }
    }
    op_.show_text("Printing page" + Str(static_cast<std::int64_t>(number)));
    co_await platform_.loop.breath();
    if (control_.stop_asked()) {
        co_return Failure{};
    }
    co_return printer_.print(listing.pages[number - 1]);
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

Task<Result<>> Program_listing::Print_barcode(std::string path) {
    if (!layout_.wants_barcode()) {
        co_return Result<>();
    }
    const std::string text = barcode_text(path);
    std::string refusal = barcode_refusal(text);
    Result<> printed;
    if (refusal.empty()) {
        printed = print_barcodes(text, refusal);
    }
    if (!refusal.empty()) {
        const Task<Message_answer> box = op_.box("Can't print barcode\n" + refusal);
        co_await box;
    }
    co_return printed;
}

std::string Program_listing::barcode_refusal(const std::string& text) const {
    if (!barcode_font_ && !printer_.can_draw_barcodes()) {
        return "Barcode font not installed";
    }
    const std::string missing = characters_without_barcode(text);
    return missing.empty() ? std::string()
                           : "Code 39 has no bars for these characters:  " + missing;
}

Result<> Program_listing::print_barcodes(const std::string& text, std::string& refusal) {
    for (const std::string command : {"GET-", "PUT-"}) {
        if (barcode_font_) {
            if (auto bars = print_in_barcode_font(command + text); !bars) {
                return bars;
            }
        } else if (const auto bars =
                       printer_.draw_barcode(command + text, bar_rows, listing_margin(layout_));
                   !bars) {
            refusal = bars.reason();
            return {};
        }
        std::string row = margin();
        row.append("*").append(command).append(text).append("*\n");
        if (auto caption = printer_.print(row); !caption) {
            return caption;
        }
    }
    return {};
}

Result<> Program_listing::print_in_barcode_font(const std::string& text) {
    const auto indented = printer_.print(margin());
    printer_.set_font_name(barcode_font);
    printer_.set_font_size(bar_rows * font_points(layout_));
    printer_.set_font_bold(false);
    printer_.set_font_italic(false);
    auto printed = indented.and_then([&] { return printer_.print("*" + text + "*\n"); });
    set_listing_font();
    return printed;
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

Task<> Program_listing::say(std::string reason) {
    const Task<Message_answer> box = op_.box("Can't print listing\n" + reason);
    co_await box;
}

}  // namespace kelvane
