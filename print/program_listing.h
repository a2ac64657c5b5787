#pragma once

#include <optional>
#include <string>

#include "platform/platform.h"
#include "platform/printer.h"
#include "platform/task.h"
#include "print/listing_pages.h"
#include "session/operator.h"
#include "session/page_layout.h"
#include "session/shared_state.h"
#include "session/transfer_control.h"

namespace kelvane {

/// Prints program files as listings. The whole listing is composed first and printed afterwards;
/// both let others in, and Stop, a new command or the end of the program ends them with nothing
/// printed. One listing is in work at a time.
class Program_listing {
  public:
    /// All outlive the listing.
    Program_listing(Platform& platform, Operator& op, Transfer_control& control,
                    Shared_state& state);

    /// Prints the file `filename` of the state in the page layout that is in force. A file that
    /// does not exist prints nothing and says nothing. True when the printer has taken it.
    Task<bool> Print_listing();

    /// Shows on the screen what printing `path` in `layout` would put on paper, until the operator
    /// closes the preview. Only while nothing else is at work (`may_start`).
    Task<> Preview_listing(std::string path, Page_layout layout);

    /// False while a transfer or a listing is going on.
    [[nodiscard]] bool may_start() const;

    /// Tells whether the bar code font is installed; leaves the printer set to it.
    void Test_barcode(bool& available);

    /// Prints the bar codes that ask a machine's control to get and to put `path` at the printer's
    /// position, each with its text under it, six rows in all. Does nothing when the layout wants
    /// none; says so when the system cannot print them or Code 39 lacks a character of the text.
    /// Sets the listing's font again. Fails when the printer has.
    Task<Result<>> Print_barcode(std::string path);

  private:
    class Display;
    class Document;
    Task<bool> run(std::string path, Page_layout layout, Print_destination destination);
    Task<std::optional<Listing>> compose(std::string path);
    [[nodiscard]] Listing_source source_of(const std::string& path, std::string content) const;
    Task<Result<>> print_document(const Listing& listing, std::string path,
                                  Print_destination destination);
    Task<Result<>> print_page(const Listing& listing, std::size_t number, std::string path);
    /// Why there are no bar codes of `text`; empty when there can be.
    [[nodiscard]] std::string barcode_refusal(const std::string& text) const;
    /// `refusal` takes the reason why bars cannot be drawn; a failure is the printer's.
    [[nodiscard]] Result<> print_barcodes(const std::string& text, std::string& refusal);
    [[nodiscard]] Result<> print_in_barcode_font(const std::string& text);
    [[nodiscard]] std::string margin() const;
    [[nodiscard]] std::string barcode_text(const std::string& path) const;
    /// Bar codes are wanted and can be made of `path`.
    [[nodiscard]] bool prints_barcode(const std::string& path) const;
    void set_listing_font();
    Task<> say(std::string reason);

    Platform& platform_;
    Printer& printer_;
    Operator& op_;
    Transfer_control& control_;
    Shared_state& state_;
    Page_layout layout_;         ///< of the listing in work
    bool barcode_font_ = false;  ///< the bar code font is installed
};

}  // namespace kelvane
