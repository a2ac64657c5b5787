#pragma once

#include <string>

#include "session/shared_state.h"

namespace kelvane {

/// The page layout of listings: the thirteen values of its settings file, in the file's order.
struct Page_layout {
    int lines_per_page = 55;
    bool description = true;   ///< the block of the file's particulars on page 1
    bool line_numbers = true;  ///< before every program line
    bool page_numbers = true;  ///< "Page n" under every page
    int line_length = 70;      ///< characters of a printed line, six given up for line numbers
    int margin = 5;            ///< blanks before every line
    std::string font = "Courier";
    int font_size = 10;  ///< points
    bool bold = false;
    bool italic = false;
    bool reverse_order = false;  ///< the last page first
    bool barcode_file = false;   ///< bar codes of the bare file name on page 1
    bool barcode_path = false;   ///< bar codes of the whole path; goes before `barcode_file`

    [[nodiscard]] bool wants_barcode() const { return barcode_file || barcode_path; }
};

/// The layout that is in force.
Page_layout page_layout_of(const Shared_state& state);
/// Puts `layout` in force.
void set_page_layout(Shared_state& state, const Page_layout& layout);

/// The settings file's content: a value a line, the font in double quotes, truth values as #TRUE#
/// and #FALSE#. The font's name must not hold a double quote.
std::string page_layout_text(const Page_layout& layout);

/// What the page layout dialog takes; files may hold anything.
struct Value_range {
    int lowest;
    int highest;
};
inline constexpr Value_range lines_per_page_range{10, 200};
inline constexpr Value_range line_length_range{20, 250};
inline constexpr Value_range margin_range{0, 60};
inline constexpr Value_range font_size_range{4, 72};

}  // namespace kelvane
