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
    void set_font_size(int points) override {
        font_size = points;
        sizes.push_back(points);
    }
    void set_font_bold(bool bold) override { font_bold = bold; }
    void set_font_italic(bool italic) override { font_italic = italic; }
    [[nodiscard]] bool font_available(const std::string& name) const override {
        return name == installed_font;
    }
    [[nodiscard]] std::vector<std::string> fixed_fonts() const override { return {"Fixed"}; }
    [[nodiscard]] bool can_draw_barcodes() const override { return draws_barcodes; }
    [[nodiscard]] bool begin_document(const std::string& the_title,
                                      Print_destination where) override {
        title = the_title;
        destination = where;
        pages.assign(1, {});
        return works;
    }
    void fit_page(int the_rows, int the_columns) override {
        rows = the_rows, columns = the_columns;
    }
    [[nodiscard]] bool print(std::string_view text) override {
        pages.back() += text;
        if (on_print) {
            on_print();
        }
        return works;
    }
    [[nodiscard]] bool draw_barcode(std::string_view text, int, int) override {
        if (draws_barcodes && !bars_too_fine) {
            pages.back().append("[").append(text).append("]\n");
        }
        return draws_barcodes && !bars_too_fine;
    }
    [[nodiscard]] bool new_page() override {
        pages.emplace_back();
        return works;
    }
    [[nodiscard]] bool end_document() override {
        ++documents_ended;
        return works;
    }
    void abort_document() override { aborted = true; }
    [[nodiscard]] std::string destination_name() const override { return "Test printer"; }
    [[nodiscard]] std::string last_error() const override {
        return works ? "too fine" : "out of paper";
    }
    void select_printer() override { ++selections; }

    std::string font_name;
    int font_size = 0;
    bool font_bold = false;
    bool font_italic = false;
    std::string installed_font;
    bool draws_barcodes = false;
    bool works = true;
    bool aborted = false;
    Print_destination destination = Print_destination::paper;
    int rows = 0;
    int columns = 0;
    int documents_ended = 0;
    int selections = 0;
    std::vector<std::string> pages;
    std::function<void()> on_print;  ///< runs after every print, as the operator's chance to act
    bool bars_too_fine = false;
    std::vector<int> sizes;  ///< every font size that was set, in order
    std::string title;
};

}  // namespace kelvane::testing
