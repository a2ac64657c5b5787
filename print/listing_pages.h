#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fault.h"

namespace kelvane {

/// What a listing's pages look like. Numbers come from a settings file and may be anything: a page
/// has at least one line, a line at least one character, and the margin is 0 to `widest_margin`.
struct Listing_layout {
    int lines_per_page = 55;
    int line_length = 70;  ///< characters of a printed line, six of them given up for line numbers
    int margin = 5;        ///< blanks before every line
    bool line_numbers = true;
    bool page_numbers = true;   ///< "Page n" under every page
    bool description = true;    ///< the block of the file's particulars on page 1
    bool barcode_room = false;  ///< the top of page 1 is left to the bar codes
};

inline constexpr int widest_margin = 200;

/// What is listed. The texts of dates are printed as they are.
struct Listing_source {
    std::string content;  ///< the file's bytes
    std::string path;     ///< as the operator knows the file
    std::string created;  ///< date and time of the file
    std::string printed;  ///< date and time of today
};

/// The pages' texts from page 1 on; lines are separated by single line feeds.
struct Listing {
    std::vector<std::string> pages;  ///< empty when `fault` is set or the composition was stopped
    Fault_or_ok fault;               ///< subscript_out_of_range beyond `most_listing_pages`
    bool stopped = false;
};

inline constexpr std::size_t most_listing_pages = 10000;

/// Composes the listing. `proceed` is asked after every program line whether to go on; it is the
/// place to yield.
Listing compose_listing(const Listing_source& source, const Listing_layout& layout,
                        const std::function<bool()>& proceed);

/// The program's description: the text of the first comment in parentheses in the first 1024
/// characters, up to its end or the end of its line; empty without one.
std::string program_description(std::string_view content);

/// Columns of the widest body line or footer that `layout` allows. The lines of the particulars may
/// be wider: a path is as long as it is.
int listing_columns(const Listing_layout& layout);

/// Rows that the paper must take for `listing`, `barcode_rows` of them above the text of page 1:
/// those of its fullest page. A wrapped line that begins on the last row runs over it; only a few
/// rows of that are counted, so that one endless line does not make all the others unreadable.
int listing_rows(const Listing& listing, const Listing_layout& layout, int barcode_rows);

}  // namespace kelvane
