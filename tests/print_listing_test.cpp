#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frame/main_window.h"
#include "print/program_listing.h"
#include "support/headless_platform.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Print_listing : public ::testing::Test {
  protected:
    Print_listing() {
        system.files.put(path, "A\nB\nC\n");
        window.state.filename = path;
        window.state.page_layout.Lines_per_page = 2;
        window.state.page_layout.margin = 1;
        window.state.page_layout.Print_description = false;
        window.state.page_layout.Print_line_numbers = false;
        window.state.page_layout.Print_page_numbers = false;
    }

    const std::string path = "/nc/part-1.nc";
    testing::Headless_platform system;
    Kelvane_lite_form window{system.platform};
    testing::Recording_printer& printer = system.printer;
    Program_listing listing{system.platform, window, window.control, window.state};
    void print() { system.loop.run(listing.Print_listing()); }
    const std::string page_1 = "\n\n A\n B\n";
    const std::string page_2 = "\n\n C\n\n";
    const std::string bars =
        "[GET-PART-1.NC]\n *GET-PART-1.NC*\n[PUT-PART-1.NC]\n *PUT-PART-1.NC*\n";
};

TEST_F(Print_listing, prints_in_the_layouts_font_and_says_where_to) {
    window.state.page_layout.Printer_fontbold = true;
    window.state.Print_first_page_only = 1;
    std::vector<std::string> log;
    printer.on_print = [&] { log.push_back(window.Text1.text()); };
    print();
    EXPECT_THAT(printer.pages, ElementsAre(page_1, page_2));
    EXPECT_THAT(log, ElementsAre("Printing page 1", "Printing page 2"));
    EXPECT_EQ(printer.title, "part-1.nc");
    EXPECT_EQ(printer.font_name, "Courier");
    EXPECT_THAT(printer.sizes, ElementsAre(12, 10));
    EXPECT_TRUE(printer.font_bold && !printer.font_italic);
    EXPECT_EQ(printer.documents_ended, 1);
    EXPECT_EQ(printer.fitted_rows, 4) << "no room is taken for bar codes that are not wanted";
    EXPECT_EQ(window.Text1.text(), "");
    EXPECT_EQ(window.state.Print_first_page_only, 0);
    EXPECT_THAT(window.status_label.caption(), HasSubstr("Listing sent to Test printer"));
    EXPECT_FALSE(window.Open_file_button.visible());
    printer.file = "/home/a/listing.pdf";
    system.files.put(path, "G\xB1\xD8\xB2\x8DM30");  // a tape image: even parity
    print();
    EXPECT_EQ(printer.pages.front(), "\n\n G1X2\n M30\n");
    EXPECT_THAT(window.status_label.caption(), HasSubstr("Listing sent to /home/a/listing.pdf"));
    window.Open_file_button.click();
    EXPECT_EQ(system.desktop.opened, printer.file);
}

TEST_F(Print_listing, reverse_order_with_drawn_bar_codes) {
    window.state.page_layout.Lines_per_page = 6;
    window.state.page_layout.Print_reverse_order = true;
    window.state.page_layout.Barcode_file = true;
    printer.draws_barcodes = true;
    print();
    EXPECT_THAT(printer.pages, ElementsAre("\n\n C\n\n\n\n\n\n", bars + " A\n B\n"));
    EXPECT_EQ(printer.fitted_rows, 8);
}

TEST_F(Print_listing, bar_codes_of_the_path_in_the_installed_font) {
    printer.installed_font = "Code39OneInchTT-Regular";
    window.state.page_layout.Barcode_path = true;
    window.state.page_layout.Lines_per_page = 8;
    print();
    const std::string name = "-/NC/PART-1.NC*\n";
    EXPECT_THAT(printer.pages, ElementsAre(" *GET" + name + " *GET" + name + " *PUT" + name +
                                           " *PUT" + name + " A\n B\n C\n\n"));
    EXPECT_THAT(printer.sizes, ElementsAre(12, 10, 20, 10, 20, 10));
    EXPECT_EQ(printer.font_name, "Courier");
}

TEST_F(Print_listing, what_cannot_be_a_bar_code_is_said_and_the_listing_is_printed) {
    const struct {
        const char* path;
        bool drawn, too_fine;
        const char* said;
    } cases[] = {
        {"/nc/part-1.nc", false, false, "Can't print barcode\nBarcode font not installed"},
        {"/nc/a_b(1).nc", true, false,
         "Can't print barcode\nCode 39 has no bars for these characters:  _()"},
        {"/nc/part-1.nc", true, true, "Can't print barcode\ntoo fine"},
    };
    window.state.page_layout.Barcode_file = true;
    for (const auto& c : cases) {
        system.files.put(c.path, "A\nB\nC\n");
        window.state.filename = c.path;
        printer.draws_barcodes = c.drawn;
        printer.bars_too_fine = c.too_fine;
        system.boxes.expect(c.said);
        const int before = printer.documents_ended;
        print();
        EXPECT_EQ(printer.documents_ended, before + 1) << c.said;
        EXPECT_THAT(printer.pages.back(), HasSubstr(" C\n"));
    }
}

TEST_F(Print_listing, what_ends_it_early_prints_nothing) {
    window.state.filename = "/nc/missing.nc";
    print();
    system.boxes.expect("Can't print listing\nout of paper");
    window.state.filename = path;
    printer.works = false;
    print();
    printer.works = true;
    std::string lines;
    for (int line = 0; line < 20001; ++line) {
        lines += "N\n";
    }
    system.files.put(path, lines);
    system.boxes.expect("Can't print listing\nSubscript out of range");
    print();
    system.files.fail("read", "part-1.nc");
    system.boxes.expect("Can't print listing");
    print();
    EXPECT_EQ(printer.documents_ended, 0);
}

TEST_F(Print_listing, stop_while_composing_or_printing_drops_the_document) {
    system.loop.after(Clock_time{0}, [&] { window.Stop_button.click(); });
    print();
    EXPECT_THAT(printer.pages, IsEmpty());
    printer.on_print = [&] { window.Stop_button.click(); };
    print();
    EXPECT_TRUE(printer.aborted);
    EXPECT_EQ(printer.documents_ended, 0);
    EXPECT_EQ(printer.pages.size(), 2U);
    EXPECT_FALSE(window.Stop_button.enabled());
    EXPECT_EQ(window.Stop_button.caption(), "Stop");
    EXPECT_EQ(window.control.Stopped(), 0);
}

TEST_F(Print_listing, preview_leaves_a_transfer_alone) {
    {
        const Transfer_control::Running transfer(window.control);
        ASSERT_TRUE(window.control.begin(Direction::send));
        system.loop.run(listing.Preview_listing(path, window.state.page_layout));
        EXPECT_THAT(printer.pages, IsEmpty());
    }
    system.loop.run(listing.Preview_listing(path, window.state.page_layout));
    EXPECT_THAT(printer.pages, ElementsAre(page_1, page_2));
    EXPECT_EQ(printer.destination, Print_destination::preview);
}

}  // namespace
}  // namespace kelvane
