#include "print/listing_pages.h"

#include <algorithm>

#include "platform/basic_text.h"
#include "platform/lines.h"

namespace kelvane {

namespace {

constexpr std::size_t line_number_width = 7;
constexpr int columns_given_to_numbers = 6;
constexpr std::string_view page_top = "\n\n";
constexpr std::string_view footer_lead = "\n\n";
constexpr std::size_t footer_indent = 37;
constexpr int run_over_rows = 8;

/// Line counts at which page 1 begins; what stands above it counts as lines already printed.
constexpr int first_line = 1;
constexpr int first_line_under_barcode = 5;
constexpr int first_line_under_header = 11;
constexpr int first_line_under_barcode_and_header = 16;

/// Beyond any paper, and small enough that no settings file can ask for a page of gigabytes.
constexpr int most_page_lines = 10000;
constexpr int most_line_characters = 10000;

int page_lines(const Page_layout& layout) {
    return std::clamp(layout.Lines_per_page, 1, most_page_lines);
}

int line_characters(const Page_layout& layout) {
    const int given = layout.Print_line_numbers ? columns_given_to_numbers : 0;
    return std::clamp(layout.line_length, 1 + given, most_line_characters) - given;
}

std::string number_text(std::size_t number) {
    return Str(static_cast<std::int64_t>(number));
}

/// The listing while it grows: `buffer_` is the page in work, `printed_` the number of the line of
/// the page that is printed next.
class Composer {
  public:
    Composer(const Listing_source& source, const Page_layout& layout, bool barcode_room)
        : source_(source),
          text_(without_end_mark(source.content)),
          layout_(layout),
          barcode_room_(barcode_room),
          lines_(page_lines(layout)),
          characters_(static_cast<std::size_t>(line_characters(layout))),
          margin_(static_cast<std::size_t>(listing_margin(layout)), ' ') {
        start_first_page();
        if (layout_.Print_description) {
            put_header();
        }
    }

    /// Composes one program line. False when there is none left, or no page can follow.
    bool compose_line() {
        if (printed_ > lines_) {
            finish_page();
        }
        if (listing_.pages.size() >= most_listing_pages) {
            listing_ = {{}, Fault::subscript_out_of_range};
            return false;
        }
        if (rest_.at_end()) {
            finish_listing();
            return false;
        }
        put_line(rest_.take());
        return true;
    }

    [[nodiscard]] Listing take() { return std::move(listing_); }

  private:
    void start_first_page() {
        printed_ = barcode_room_ ? first_line_under_barcode : first_line;
        buffer_ = barcode_room_ ? std::string() : std::string(page_top);
    }

    void put_header_line(std::string_view label, std::string_view value) {
        buffer_.append(margin_).append(label).append(value).append("\n");
    }

    void put_header() {
        const std::size_t lines = count_lines(text_);
        const std::size_t pages = lines / static_cast<std::size_t>(lines_) + 1;
        put_header_line("File:     ", source_.path);
        put_header_line("Name:     ", program_description(source_.content));
        put_header_line("Created:  ", source_.created);
        put_header_line("Printed:  ", source_.printed);
        put_header_line("Size:    ", number_text(source_.content.size()) + " Bytes");
        put_header_line("Lines:   ", number_text(lines));
        put_header_line("Pages:   ", number_text(pages));
        buffer_.append("\n\n\n");
        printed_ = barcode_room_ ? first_line_under_barcode_and_header : first_line_under_header;
    }

    [[nodiscard]] std::string line_prefix() const {
        std::string prefix = margin_;
        if (layout_.Print_line_numbers) {
            std::string number = decimal(static_cast<std::int64_t>(source_line_));
            number.resize(std::max(number.size(), line_number_width), ' ');
            prefix += number;
        }
        return prefix;
    }

    void put_line(std::string_view rest) {
        std::string prefix = line_prefix();
        while (rest.size() > characters_) {
            put_row(prefix, rest.substr(0, characters_));
            rest.remove_prefix(characters_);
            prefix.assign(prefix.size(), ' ');
        }
        put_row(prefix, rest);
        ++source_line_;
    }

    void put_row(std::string_view prefix, std::string_view text) {
        buffer_.append(prefix).append(text).append("\n");
        ++printed_;
    }

    void put_footer() {
        if (layout_.Print_page_numbers) {
            buffer_.append(footer_lead).append(footer_indent, ' ').append("Page");
            buffer_.append(number_text(listing_.pages.size() + 1));
        }
    }

    void finish_page() {
        put_footer();
        listing_.pages.push_back(std::move(buffer_));
        buffer_ = page_top;
        printed_ = first_line;
    }

    void finish_listing() {
        buffer_.append(static_cast<std::size_t>(std::max(lines_ - printed_ + 1, 0)), '\n');
        put_footer();
        listing_.pages.push_back(std::move(buffer_));
    }

    const Listing_source& source_;
    const std::string_view text_;  ///< of the program
    Lines rest_{text_};            ///< not yet composed
    const Page_layout& layout_;
    const bool barcode_room_;
    const int lines_;
    const std::size_t characters_;
    const std::string margin_;
    Listing listing_;
    std::string buffer_;
    int printed_ = first_line;
    std::size_t source_line_ = 1;
};

}  // namespace

Listing compose_listing(const Listing_source& source, const Page_layout& layout,
                        bool barcode_room) {
    Composer composer(source, layout, barcode_room);
    while (composer.compose_line()) {
    }
    return composer.take();
}

Task<std::optional<Listing>> compose_listing(Event_loop& loop, Listing_source source,
                                             Page_layout layout, bool barcode_room,
                                             std::function<bool()> stop_asked) {
    Composer composer(source, layout, barcode_room);
    while (composer.compose_line()) {
        co_await loop.breath();
        if (stop_asked()) {
            co_return std::nullopt;
        }
    }
    co_return composer.take();
}

std::string program_description(std::string_view content) {
    constexpr std::size_t looked_at = 1024;
    std::string_view text = content.substr(0, looked_at);
    const std::size_t open = text.find('(');
    if (open == std::string_view::npos) {
        return {};
    }
    text.remove_prefix(open + 1);
    return std::string(text.substr(0, text.find_first_of(")\n\r")));
}

int listing_margin(const Page_layout& layout) {
    constexpr int widest = 200;
    return std::clamp(layout.margin, 0, widest);
}

int listing_columns(const Page_layout& layout) {
    const int number = layout.Print_line_numbers ? static_cast<int>(line_number_width) : 0;
    const int body = listing_margin(layout) + number + line_characters(layout);
    constexpr int footer = static_cast<int>(footer_indent) + 10;  // "Page 10000"
    return layout.Print_page_numbers ? std::max(body, footer) : body;
}

int listing_rows(const Listing& listing, const Page_layout& layout, int barcode_rows) {
    int fullest = 1;
    int above = barcode_rows;
    for (const std::string& page : listing.pages) {
        fullest = std::max(fullest, static_cast<int>(count_lines(page)) + above);
        above = 0;
    }
    const int promised = std::max(page_lines(layout), first_line_under_barcode_and_header) + 5;
    return std::min(fullest, promised + run_over_rows);
}

}  // namespace kelvane
