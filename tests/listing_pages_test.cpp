#include "print/listing_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "print/code39.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;

Listing compose(const std::string& content, const Page_layout& layout, bool barcode_room = false) {
    return compose_listing({content, "/nc/P.NC", "C", "P"}, layout, barcode_room);
}

Page_layout bare(int lines, int length = 70) {
    return {.Lines_per_page = lines,
            .Print_description = false,
            .Print_line_numbers = false,
            .Print_page_numbers = false,
            .line_length = length,
            .margin = 0};
}

std::string spaces(std::size_t count) {
    return std::string(count, ' ');
}

TEST(Listing_pages, header_numbers_wrapping_and_footer) {
    const std::string content = "O1 (PART)\r\n" + std::string(130, 'X') + "\r\nM30";
    const std::string header =
        "  File:     /nc/P.NC\n"
        "  Name:     PART\n"
        "  Created:  C\n"
        "  Printed:  P\n"
        "  Size:     146 Bytes\n"
        "  Lines:    3\n"
        "  Pages:    1\n\n\n\n";
    const std::string body = "  1      O1 (PART)\n  2      " + std::string(64, 'X') + "\n" +
                             spaces(9) + std::string(64, 'X') + "\n" + spaces(9) + "XX\n" +
                             "  3      M30\n";
    const std::string footer = "\n\n" + spaces(37) + "Page 1";
    const Page_layout layout{.Lines_per_page = 21, .margin = 2};
    EXPECT_THAT(compose(content, layout).pages,
                ElementsAre("\n\n" + header + body + std::string(6, '\n') + footer));
    EXPECT_THAT(compose(content, layout, true).pages, ElementsAre(header + body + "\n" + footer));
    EXPECT_EQ(listing_columns(layout), 2 + 7 + 64);
}

TEST(Listing_pages, page_breaks) {
    struct Case {
        const char* name;
        std::string content;
        Page_layout layout;
        std::vector<std::string> pages;
    };
    Page_layout numbered_pages = bare(2);
    numbered_pages.Print_page_numbers = true;
    const std::string footer = "\n\n" + spaces(37) + "Page ";
    const Case cases[] = {
        {"empty file", "", bare(2), {"\n\n\n\n"}},
        {"part of a page", "A\n", bare(2), {"\n\nA\n\n"}},
        {"a full page, then one that has the footer only",
         "A\nB\n",
         numbered_pages,
         {"\n\nA\nB\n" + footer + "1", "\n\n\n\n" + footer + "2"}},
        {"second page", "A\nB\nC", bare(2), {"\n\nA\nB\n", "\n\nC\n\n"}},
        {"a wrapped line runs over the last row",
         "A\nBBCCD\nE\n",
         bare(2, 2),
         {"\n\nA\nBB\nCC\nD\n", "\n\nE\n\n"}},
        {"every line end, and the mark of the file's end",
         "A\rB\r\n\rC\n\x1A",
         bare(6),
         {"\n\nA\nB\n\nC\n\n\n"}},
        {"a line just as long as the row", "BBB\n", bare(1, 3), {"\n\nBBB\n", "\n\n\n"}},
        {"absurd settings still give pages", "AB\n", bare(-3, -7), {"\n\nA\nB\n", "\n\n\n"}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(compose(c.content, c.layout).pages, c.pages) << c.name;
    }
    const Page_layout layout = bare(60, 10);
    EXPECT_EQ(listing_rows(compose("A\n", layout), layout, 6), 68);
    EXPECT_EQ(listing_rows(compose(std::string(100000, 'X'), layout), layout, 0), 73);
    constexpr int absurd = std::numeric_limits<int>::max();
    const Listing endless = compose("A\n", bare(absurd, absurd));
    EXPECT_EQ(endless.pages.front().size(), 2U + 10000 + 1);
    EXPECT_EQ(listing_rows(endless, bare(absurd), 0), 2 + 10000);
    EXPECT_EQ(listing_columns(bare(1, absurd)), 10000);
    EXPECT_THAT(compose("A\nB\nC\n", bare(6), true).pages,
                ElementsAre("A\nB\n", "\n\nC\n\n\n\n\n\n"));
}

TEST(Listing_pages, description_is_the_first_comment) {
    const std::pair<const char*, const char*> cases[] = {
        {"%\nO0001 (BRACKET)(MILL)\n", "BRACKET"},
        {"O1 (OPEN\r\nN1)", "OPEN"},
        {"O1 (OPEN\nN1)", "OPEN"},
        {"N1 G0", ""},
        {"(", ""},
        {"(A(B)", "A(B"},
    };
    for (const auto& [content, description] : cases) {
        EXPECT_EQ(program_description(content), description) << content;
    }
    EXPECT_EQ(program_description(spaces(1020) + "(ABCDEF)"), "ABC");
    EXPECT_EQ(program_description(spaces(1024) + "(ABCDEF)"), "");
}

TEST(Listing_pages, more_than_10000_pages_is_a_fault) {
    std::string content;
    for (int line = 0; line < 9999; ++line) {
        content += "N\n";
    }
    EXPECT_EQ(compose(content, bare(1)).pages.size(), 10000U);
    const Listing listing = compose(content + "N\n", bare(1));
    EXPECT_EQ(listing.fault, Fault::subscript_out_of_range);
    EXPECT_TRUE(listing.pages.empty());
}

TEST(Code39, texts_of_a_path) {
    const struct {
        const char *path, *file, *whole, *missing;
    } cases[] = {
        {"C:\\nc\\part-1.nc", "PART-1.NC", "C./NC/PART-1.NC", ""},
        {"/home/op/o1 a.nc", "O1 A.NC", "/HOME/OP/O1 A.NC", ""},
        {"P:x_(y)_z", "X_(Y)_Z", "P.X_(Y)_Z", "_()"},
        {"b\xFC\x72o", "B\xFCRO", "B\xFCRO", "\xFC"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(barcode_file_text(c.path), c.file);
        EXPECT_EQ(barcode_path_text(c.path), c.whole);
        EXPECT_EQ(characters_without_barcode(barcode_path_text(c.path)), c.missing);
    }
}

}  // namespace
}  // namespace kelvane
