#pragma once

#include <string>

namespace kelvane {

/// The page layout of listings: the thirteen values of its settings file, in the file's order. A
/// file may hold any numbers.
struct Page_layout {
    int Lines_per_page = 55;
    bool Print_description = true;   ///< the block of the file's particulars on page 1
    bool Print_line_numbers = true;  ///< before every program line
    bool Print_page_numbers = true;  ///< "Page n" under every page
    int line_length = 70;  ///< characters of a printed line, six given up for line numbers
    int margin = 5;        ///< blanks before every line
    std::string Printer_font = "Courier";
    int Printer_fontsize = 10;  ///< points
    bool Printer_fontbold = false;
    bool Printer_fontitalic = false;
    bool Print_reverse_order = false;  ///< the last page first
    bool Barcode_file = false;         ///< bar codes of the bare file name on page 1
    bool Barcode_path = false;         ///< bar codes of the whole path; goes before `Barcode_file`

    [[nodiscard]] bool wants_barcode() const { return Barcode_file || Barcode_path; }
};

}  // namespace kelvane
