#pragma once

#include <optional>
#include <string>

#include "frame/main_window.h"
#include "platform/printer.h"
#include "print/listing_pages.h"
#include "session/page_layout.h"

namespace kelvane {

/// Prints program files as listings. The whole listing is composed first and printed afterwards;
/// both yield, and Stop, a new command or the end of the program ends them with nothing printed.
class Program_listing {
  public:
    Program_listing(Kelvane_lite_form& window, Printer& printer);

    /// Prints the file `filename` of the window's state in the page layout that is in force. A file
    /// that does not exist prints nothing and says nothing.
    void Print_listing();

    /// Shows on the screen what printing `path` in `layout` would put on paper, until the operator
    /// closes the preview. Only while nothing else is at work (`may_start`).
    void Preview_listing(const std::string& path, const Page_layout& layout);

    /// False while a transfer or a listing is going on.
    [[nodiscard]] bool may_start() const;

    /// Tells whether the bar code font is installed; leaves the printer set to it.
    void Test_barcode(bool& available);

    /// Prints the bar codes that ask a machine's control to get and to put `path` at the printer's
    /// position, each with its text under it, six rows in all. Does nothing when the layout wants
    /// none; says so when the system cannot print them or Code 39 lacks a character of the text.
    /// Sets the listing's font again. False when the printer failed.
    [[nodiscard]] bool Print_barcode(const std::string& path);

  private:
    void run(const std::string& path, const Page_layout& layout, Print_destination destination);
    [[nodiscard]] std::optional<Listing> compose(const std::string& path);
    [[nodiscard]] Listing_source source_of(const std::string& path, std::string content) const;
    void output(const Listing& listing, const std::string& path, Print_destination destination);
    [[nodiscard]] bool print_pages(const Listing& listing, const std::string& path);
    [[nodiscard]] bool print_page(const Listing& listing, std::size_t number);
    [[nodiscard]] bool print_first_page(const Listing& listing, const std::string& path);
    enum class Bars { printed, refused, failed };
    [[nodiscard]] Bars print_bars(const std::string& text);
    [[nodiscard]] std::string margin() const;
    [[nodiscard]] std::string barcode_text(const std::string& path) const;
    /// Bar codes are wanted and can be made of `path`.
    [[nodiscard]] bool prints_barcode(const std::string& path) const;
    void set_listing_font();
    void begin_display();
    void end_display();
    [[nodiscard]] bool proceed();
    [[nodiscard]] bool stop_asked() const;
    void say(const std::string& reason);

    Kelvane_lite_form& window_;
    Printer& printer_;
    Page_layout layout_;         ///< of the listing in work
    bool barcode_font_ = false;  ///< the bar code font is installed
};

}  // namespace kelvane
