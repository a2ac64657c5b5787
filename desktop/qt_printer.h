#pragma once

#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "desktop/print_page.h"
#include "desktop/qt_windows.h"
#include "platform/files.h"
#include "platform/printer.h"

class QPrinter;

namespace kelvane {

/// The printer on the system's printing service: the one chosen with `select_printer`, in this run
/// or an earlier one, else the system's default, else the file "Program listing.pdf" in the program
/// directory. A PDF file is written aside and takes its place when it is complete. Needs the
/// application object.
class Qt_printer : public Printer {
  public:
    Qt_printer(Files& files, Qt_windows& windows);
    Qt_printer(const Qt_printer&) = delete;
    Qt_printer& operator=(const Qt_printer&) = delete;
    ~Qt_printer() override;

    void set_font_name(const std::string& name) override;
    void set_font_size(int points) override;
    void set_font_bold(bool bold) override { font_.bold = bold; }
    void set_font_italic(bool italic) override { font_.italic = italic; }
    [[nodiscard]] bool font_available(const std::string& name) const override;
    [[nodiscard]] std::vector<std::string> fixed_fonts() const override;
    [[nodiscard]] bool can_draw_barcodes() const override { return true; }
    [[nodiscard]] Result<> begin_document(const std::string& title,
                                          Print_destination destination) override;
    void fit_page(int rows, int columns) override;
    [[nodiscard]] Result<> print(std::string_view text) override;
    [[nodiscard]] Result<> draw_barcode(std::string_view text, int rows, int columns) override;
    [[nodiscard]] Result<> new_page() override;
    Task<Result<>> end_document() override;
    void abort_document() override;
    [[nodiscard]] std::string destination_name() const override { return destination_; }
    [[nodiscard]] std::string destination_file() const override { return destination_file_; }
    Task<> select_printer() override;

  private:
    struct Document;
    /// Of the printer that was chosen last; empty when none was.
    [[nodiscard]] std::string kept_name() const;
    void keep_name(const QPrinter& printer);
    /// The one chosen in an earlier run, else the system's; null when the chosen one is not there,
    /// in whose place no other may print.
    [[nodiscard]] std::shared_ptr<QPrinter> usual_printer() const;
    [[nodiscard]] Result<> start_painting(Document& document);
    [[nodiscard]] Result<> paint_page();
    /// Nothing of it comes on paper, and no part of a PDF file stays behind.
    void drop_document();
    [[nodiscard]] Result<> finish_paper(Document& document);

    Files& files_;
    Qt_windows& windows_;
    Print_font font_;
    std::shared_ptr<QPrinter> chosen_;  ///< with Select printer in this run; null until then
    std::unique_ptr<Document> document_;
    std::string destination_;
    std::string destination_file_;
};

}  // namespace kelvane
