#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_loop.h"
#include "platform/fault.h"
#include "session/page_layout.h"

namespace kelvane {

/// What is listed. The texts of dates are printed as they are.
struct Listing_source {
    std::string content;  ///< the file's bytes
    std::string path;     ///< as the operator knows the file
    std::string created;  ///< date and time of the file
    std::string printed;  ///< date and time of today
};

/// The pages' texts from page 1 on; lines are separated by single line feeds.
struct Listing {
    std::vector<std::string> pages;  ///< empty when `fault` is set
    Fault_or_ok fault;               ///< subscript_out_of_range beyond `most_listing_pages`
};

inline constexpr std::size_t most_listing_pages = 10000;

/// Composes the listing. `layout` may hold any numbers: a page has 1 to 10000 lines, a line 1 to
/// 10000 characters, and the margin is 0 to 200 blanks. With `barcode_room` the top of page 1 is
/// left to the bar codes.
Listing compose_listing(const Listing_source& source, const Page_layout& layout, bool barcode_room);

/// The same as long work. It lets others in and asks `stop_asked` after every program line; true
/// ends it without a value.
Task<std::optional<Listing>> compose_listing(Event_loop& loop, Listing_source source,
                                             Page_layout layout, bool barcode_room,
                                             std::function<bool()> stop_asked);

/// The program's description: the text of the first comment in parentheses in the first 1024
/// characters, up to its end or the end of its line; empty without one.
std::string program_description(std::string_view content);

/// Blanks before every line.
int listing_margin(const Page_layout& layout);

/// Columns of the widest body line or footer that `layout` allows. The lines of the particulars may
/// be wider: a path is as long as it is.
int listing_columns(const Page_layout& layout);

/// Rows that the paper must take for `listing`, `barcode_rows` of them above the text of page 1:
/// those of its fullest page. A wrapped line that begins on the last row runs over it; only a few
/// rows of that are counted, so that one endless line does not make all the others unreadable.
int listing_rows(const Listing& listing, const Page_layout& layout, int barcode_rows);

}  // namespace kelvane
