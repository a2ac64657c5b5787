#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/printer.h"

namespace kelvane::testing {

/// A printer that keeps what it is given: the texts of its pages, of which the last may be open. A
/// bar code is a line "[TEXT]" of its page.
class Recording_printer : public Printer {
  public:
    void set_font_name(const std::string& name) override { font_name = name; }
    void set_font_size(int points) override { sizes.push_back(points); }
    void set_font_bold(bool bold) override { font_bold = bold; }
    void set_font_italic(bool italic) override { font_italic = italic; }
    bool font_available(const std::string& name) const override { return name == installed_font; }
    std::vector<std::string> fixed_fonts() const override { return {"Fixed"}; }
    bool can_draw_barcodes() const override { return draws_barcodes; }
    Result<> begin_document(const std::string& the_title, Print_destination where) override {
        title = the_title;
        destination = where;
        pages.assign(1, {});
        return state();
    }
    void fit_page(int rows, int) override { fitted_rows = rows; }
    Result<> print(std::string_view text) override {
        pages.back() += text;
        on_print();
        return state();
    }
    Result<> draw_barcode(std::string_view text, int, int) override {
        const bool drawn = draws_barcodes && !bars_too_fine;
        pages.back() += drawn ? "[" + std::string(text) + "]\n" : "";
        return drawn ? Result<>() : Failure{"too fine"};
    }
    Result<> new_page() override {
        pages.emplace_back();
        return state();
    }
    Task<Result<>> end_document() override {
        ++documents_ended;
        co_return state();
    }
    void abort_document() override { aborted = true; }
    std::string destination_name() const override { return "Test printer"; }
    std::string destination_file() const override { return file; }
    std::string file;
    Task<> select_printer() override { co_return; }

    std::string font_name, installed_font, title;
    std::vector<int> sizes;  ///< every font size that was set, in order
    bool font_bold = false;
    bool font_italic = false;
    bool draws_barcodes = false;
    bool bars_too_fine = false;
    bool works = true;
    bool aborted = false;
    Print_destination destination = Print_destination::paper;
    int documents_ended = 0;
    int fitted_rows = 0;
    std::vector<std::string> pages;
    std::function<void()> on_print = [] {};  ///< the operator's chance to act

  private:
    [[nodiscard]] Result<> state() const { return works ? Result<>() : Failure{"out of paper"}; }
};

}  // namespace kelvane::testing
