// What comes out on paper when there is no printer: the PDF file that stands in for it, read by a
// PDF tool and a bar code reader.

#include <QPrintPreviewWidget>
#include <QTimer>
#include <algorithm>
#include <gmock/gmock.h>

#include "support/print_room.h"

namespace kelvane {
namespace {

using ::testing::HasSubstr;

class Print_paper : public testing::Print_room {
  protected:
    static void SetUpTestSuite() { use_printing_service("/nonexistent/cups.sock"); }

    /// What a bar code reader finds on page 1.
    [[nodiscard]] std::string bar_codes() const {
        const QString picture = folder.filePath("page");
        testing::run_tool("pdftoppm", {"-r", "300", "-png", "-singlefile", pdf, picture});
        constexpr int nothing_found = 4;
        return testing::run_tool(
            "zbarimg", {"-q", "-Sdisable", "-Scode39.enable", picture + ".png"}, nothing_found);
    }

    /// The text of all pages without any blanks and line ends.
    [[nodiscard]] std::string letters() const {
        std::string text = testing::run_tool("pdftotext", {"-raw", pdf, "-"});
        std::erase_if(text, [](char c) {
            return std::string_view(" \n\f").find(c) != std::string_view::npos;
        });
        return text;
    }
};

std::string program(int lines) {
    std::string text = "%\r\nO1234 (BRACKET)\r\n";
    for (int line = 3; line <= lines; ++line) {
        text += "N" + decimal(line) + " G01  X" + decimal(line * 7 % 1000) + ".5 Z-3." +
                (line % 47 == 0 ? std::string(90, 'W') : "") + "\r\n";
    }
    return text;
}

TEST_F(Print_paper, pdf_has_the_composed_text_page_by_page) {
    print("bracket.nc", program(5000));
    const auto expected = composed();
    const auto pages = pages_of(pdf);
    ASSERT_EQ(pages.size(), expected.size());
    for (std::size_t page = 0; page < pages.size(); ++page) {
        ASSERT_EQ(pages[page], expected[page]) << "page " << page + 1;
    }
    EXPECT_THAT(window.status_label.caption(), HasSubstr("Program listing.pdf"));
}

TEST_F(Print_paper, bar_codes_are_read_by_a_reader) {
    window.state.page_layout.Barcode_file = true;
    print("bracket-7.nc", program(40));
    EXPECT_EQ(pages_of(pdf).size(), composed(true).size());
    const std::string found = bar_codes();
    EXPECT_THAT(found, HasSubstr("CODE-39:GET-BRACKET-7.NC\n"));
    EXPECT_THAT(found, HasSubstr("CODE-39:PUT-BRACKET-7.NC\n"));
    doubles.boxes.expect("too long for bars that can be read");
    print(QString(90, 'A') + ".nc", "M30");
    EXPECT_EQ(bar_codes(), "");
}

TEST_F(Print_paper, what_the_layout_promises_fits) {
    const struct {
        int lines, length, size;
        std::size_t filling;
        bool barcode;
    } cases[] = {{200, 70, 10, 64, false}, {55, 250, 10, 244, false}, {55, 70, 72, 64, true}};
    for (const auto& c : cases) {
        window.state.page_layout.Lines_per_page = c.lines;
        window.state.page_layout.line_length = c.length;
        window.state.page_layout.Printer_fontsize = c.size;
        window.state.page_layout.Barcode_file = c.barcode;
        print("a.nc", program(300) + std::string(c.filling + 6, 'Q') + "\r\n");
        EXPECT_EQ(pages_of(pdf).size(), composed(c.barcode).size()) << c.lines;
        EXPECT_THAT(letters(), HasSubstr(std::string(c.filling, 'Q')));
        EXPECT_EQ(bar_codes().empty(), !c.barcode);
    }
}

TEST_F(Print_paper, an_endless_line_and_a_wide_path_lose_nothing) {
    window.state.page_layout.Print_line_numbers = false;
    const QString name = QString(200, 'P') + ".nc";
    print(name, std::string(20000, '#') + "(END)");
    const std::string text = letters();
    EXPECT_EQ(std::count(text.begin(), text.end(), '#'), 20000);
    EXPECT_THAT(text, HasSubstr(name.toStdString()));
    EXPECT_THAT(text, HasSubstr("(END)"));
}

TEST_F(Print_paper, the_preview_shows_all_pages_and_prints_none) {
    window.state.filename = folder.filePath("a.nc").toStdString();
    ASSERT_TRUE(files.replace(window.state.filename, program(300)));
    Task_keeper keeper(doubles.loop);
    keeper.start(listing.Preview_listing(window.state.filename, window.state.page_layout));
    doubles.loop.run_until([this] { return windows.active_window() != nullptr; });
    QWidget* const dialog = windows.active_window();
    QCoreApplication::processEvents();
    EXPECT_EQ(dialog->findChild<QPrintPreviewWidget*>()->pageCount(),
              static_cast<int>(composed().size()));
    dialog->close();
    doubles.loop.wake();
    doubles.loop.step();
    EXPECT_TRUE(keeper.empty());
    EXPECT_FALSE(QFile::exists(pdf));
}

TEST_F(Print_paper, a_listing_that_ends_early_keeps_the_old_file) {
    print("a.nc", "M30");
    const auto before = files.read(pdf.toStdString());
    ASSERT_TRUE(before);
    doubles.loop.after(Clock_time{0}, [this] { window.Stop_button.click(); });
    print("b.nc", "M02");
    EXPECT_EQ(files.read(pdf.toStdString()), before);
    ASSERT_TRUE(printer.begin_document("b.nc", Print_destination::paper));
    ASSERT_TRUE(printer.print("M02\n") && printer.new_page());
    printer.abort_document();
    EXPECT_EQ(files.read(pdf.toStdString()), before);
}

}  // namespace
}  // namespace kelvane
