// Composing the listing of any file with any layout.

#include "fuzz_input.h"
#include "print/listing_pages.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvane;
    fuzz::Fuzz_input input(data, size);
    Page_layout layout;
    layout.Lines_per_page = input.choice(256) - 20;
    layout.line_length = input.choice(256) - 20;
    layout.margin = input.choice(256) - 20;
    layout.Print_description = input.yes();
    layout.Print_line_numbers = input.yes();
    layout.Print_page_numbers = input.yes();
    const bool barcode_room = input.yes();
    Listing_source source;
    source.path = input.text();
    source.created = input.text();
    source.content = input.rest();
    const Listing listing = compose_listing(source, layout, barcode_room);
    fuzz::require(listing.pages.size() <= most_listing_pages, "not more pages than allowed");
    fuzz::require(listing.fault || !listing.pages.empty(), "pages or a fault");
    fuzz::require(listing_rows(listing, layout, 3) >= 0, "rows counted");
    return 0;
}
