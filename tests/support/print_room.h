#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "desktop/disk_files.h"
#include "desktop/qt_printer.h"
#include "frame/main_window.h"
#include "platform/basic_text.h"
#include "print/program_listing.h"
#include "qt_test_application.h"
#include "support/headless_platform.h"

namespace kelvane::testing {

/// What a tool of the system prints on its standard output; a tool that ends otherwise than with 0
/// or `also_fine` fails the test.
inline std::string run_tool(const QString& tool, const QStringList& arguments, int also_fine = 0) {
    QProcess process;
    process.start(tool, arguments);
    EXPECT_TRUE(process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
                (process.exitCode() == 0 || process.exitCode() == also_fine))
        << tool.toStdString() << ": " << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput().toStdString();
}

/// A page's text as it can be seen: no blanks at the ends of rows, no empty rows around.
inline std::string visible(const std::string& page) {
    std::string text;
    std::string rows;
    Text_reader reader(page);
    for (std::string row; reader.line(row);) {
        row.erase(row.find_last_not_of(' ') + 1);
        rows += row + "\n";
        if (!row.empty()) {
            text = rows;
        } else if (text.empty()) {
            rows.clear();
        }
    }
    return text;
}

/// The listing on the real printer and real files in a folder of the test's own.
class Print_room : public ::testing::Test {
  protected:
    /// Where the printing service is looked for; to be said before anything is printed.
    static void use_printing_service(const std::string& socket) {
        qputenv("CUPS_SERVER", socket.c_str());
    }

    Print_room() { window.state.page_layout.Printer_font = "DejaVu Sans Mono"; }

    void print(const QString& name, const std::string& content) {
        window.state.filename = folder.filePath(name).toStdString();
        ASSERT_TRUE(files.replace(window.state.filename, content));
        doubles.loop.run(listing.Print_listing());
    }

    /// What `print` should have put on paper.
    [[nodiscard]] std::vector<std::string> composed(bool barcode_room = false) {
        const std::string path = window.state.filename;
        std::vector<std::string> pages =
            compose_listing({*files.read(path), path, "09.09.01 03:46", "21.11.26 10:30"},
                            window.state.page_layout, barcode_room)
                .pages;
        for (std::string& page : pages) {
            page = visible(page);
        }
        return pages;
    }

    /// The texts of a PDF file's pages in columns of the test's font, its margins of 10 mm cut off.
    [[nodiscard]] static std::vector<std::string> pages_of(const QString& file) {
        std::vector<std::string> pages(1);
        for (const char character :
             run_tool("pdftotext", {"-fixed", "6.02", "-x", "28", "-y", "28", "-W", "540", "-H",
                                    "786", "-enc", "Latin1", file, "-"})) {
            if (character == '\f') {
                pages.back() = visible(pages.back());
                pages.emplace_back();
            } else {
                pages.back() += character;
            }
        }
        pages.pop_back();
        return pages;
    }

    QTemporaryDir folder;
    Headless_platform doubles;
    Disk_files files{folder.path().toStdString()};
    Qt_windows windows{doubles.loop};
    Qt_printer printer{files, windows};
    Platform platform = doubles.with(doubles.loop, printer, files);
    Kelvane_lite_form window{platform};
    Program_listing listing{platform, window, window.control, window.state};
    const QString pdf = folder.filePath("Program listing.pdf");
};

}  // namespace kelvane::testing
