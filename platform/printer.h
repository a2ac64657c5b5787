#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/result.h"
#include "platform/task.h"

namespace kelvane {

/// What becomes of a document.
enum class Print_destination {
    paper,    ///< the printer, or the PDF file that stands in for a missing one
    preview,  ///< a window that shows the pages; the operator prints from there or closes it
};

/// The system's printer as a listing needs it. Text is bytes (Latin-1), laid out in rows of equal
/// height from the top left corner of the printable area; "\n" begins the next row. A row is as
/// high as the size of the font in use asks for, whatever the typeface.
///
/// No printer is looked for or asked anything before `begin_document` or `select_printer`, so a
/// printer that is switched off or slow to answer never delays the program's start.
///
/// The font may be set at any time, also before the document begins, and stays set from one
/// document to the next. One document is open at most. A failure's reason is in words for the
/// operator.
class Printer {
  public:
    virtual ~Printer() = default;

    /// Typeface of what is printed from now on. A typeface that is not installed is replaced by a
    /// monospaced one, so that columns stay columns.
    virtual void set_font_name(const std::string& name) = 0;
    /// Size in points, at least 1.
    virtual void set_font_size(int points) = 0;
    virtual void set_font_bold(bool bold) = 0;
    virtual void set_font_italic(bool italic) = 0;

    /// True when a typeface of just this name is installed.
    [[nodiscard]] virtual bool font_available(const std::string& name) const = 0;

    /// The installed typefaces of fixed width, sorted.
    [[nodiscard]] virtual std::vector<std::string> fixed_fonts() const = 0;

    /// True when `draw_barcode` has what it needs on this system.
    [[nodiscard]] virtual bool can_draw_barcodes() const = 0;

    /// Opens a document called `title` in the print queue (for a preview: in the window's title) at
    /// the top of its first page. A document that is still open is aborted. Fails when there is
    /// nowhere to print to.
    [[nodiscard]] virtual Result<> begin_document(const std::string& title,
                                                  Print_destination destination) = 0;

    /// Promises that every page has at most `rows` rows and `columns` columns (both at least 1) of
    /// the font set now. When that is more than the paper holds, all sizes of the rest of the
    /// document are taken down by one factor until it fits; they are never enlarged.
    virtual void fit_page(int rows, int columns) = 0;

    /// Prints at the current position and leaves the position behind the last character. Tabs go to
    /// the next multiple of 8 columns; other control characters print nothing. A row that is wider
    /// than the page is condensed to its width, and one below the bottom goes on a further sheet:
    /// nothing is lost off the paper.
    [[nodiscard]] virtual Result<> print(std::string_view text) = 0;

    /// Draws `text` as a Code 39 bar code `rows` rows of the current font high, beginning `columns`
    /// columns from the left of the printable area at the current row, and goes down by these
    /// `rows`. `text` has no start and stop characters; they are added. Fails, with nothing drawn
    /// and the position unchanged, when the system cannot draw bar codes, when a character has none
    /// in Code 39, or when the bars would be too fine to be read on this paper.
    [[nodiscard]] virtual Result<> draw_barcode(std::string_view text, int rows, int columns) = 0;

    /// Ends the page and goes to the top of the next.
    [[nodiscard]] virtual Result<> new_page() = 0;

    /// Ends the last page and releases the document to the printer; a preview is shown now, and
    /// waited for until the operator has closed it.
    virtual Task<Result<>> end_document() = 0;

    /// Drops the open document: nothing more of it is printed, and a stand-in file is not left half
    /// written. Without an open document it does nothing.
    virtual void abort_document() = 0;

    /// Where the last document went: the printer's name, or "Program listing.pdf" for the file in
    /// the program directory when the system has no printer. Empty before the first document and
    /// after one that was previewed only.
    [[nodiscard]] virtual std::string destination_name() const = 0;

    /// The path of the file that the last document became; empty when it went to a printer.
    [[nodiscard]] virtual std::string destination_file() const = 0;

    /// The system's dialog to choose the printer of the documents to come (kept for later
    /// runs).
    /// A cancelled or failed dialog changes nothing and says nothing.
    virtual Task<> select_printer() = 0;
};

}  // namespace kelvane
