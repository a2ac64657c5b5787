#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/form.h"
#include "platform/task_keeper.h"
#include "print/program_listing.h"

namespace kelvane {

/// Page 1 of a sample program.
struct Page_sketch {
    std::vector<std::string> rows;  ///< of its text
    int columns = 1;                ///< what the page is wide at least, margin included
    int barcode_rows = 0;           ///< rows above the text, half of them to each bar code
    int points = 1;                 ///< size of the font, unless the page cannot take it
};

/// A small picture of a page, its text far too small to be read.
class Page_picture : public Control {
  public:
    using Control::Control;
    /// Shows that page from now on.
    void set_page(Page_sketch page);
    [[nodiscard]] const Page_sketch& page() const { return page_; }

  private:
    Page_sketch page_;
};

/// What the dialog takes; files may hold anything.
struct Value_range {
    int lowest;
    int highest;
};
inline constexpr Value_range lines_per_page_range{10, 200};
inline constexpr Value_range line_length_range{20, 250};  ///< characters
inline constexpr Value_range margin_range{0, 60};         ///< blanks
inline constexpr Value_range font_size_range{4, 72};      ///< points

/// The field of a number and the reason why its text is refused, empty when it is not.
struct Number_field {
    Number_field(const std::string& name, std::string caption, Value_range limits)
        : box(name, std::move(caption)), reason(name + "_reason"), range(limits) {}
    /// None when the text is refused.
    [[nodiscard]] std::optional<int> number() const;

    Text_box box;
    Label reason;
    Value_range range;
};

/// The page layout dialog: edits the layout that is in force and its settings file. Values that
/// cannot be taken are refused beside their fields while they are typed; the picture shows the last
/// layout without such values.
class Page_layout_form_lite : public Form {
  public:
    /// OK puts the layout into `state` and stores it; `listing` makes the preview. All outlive the
    /// form.
    Page_layout_form_lite(Platform& platform, Operator& op, Shared_state& state,
                          Program_listing& listing);

    Number_field Lines_per_page{"Lines_per_page", "&Lines per page", lines_per_page_range};
    Number_field line_length{"line_length", "&Characters per line", line_length_range};
    Number_field margin{"margin", "Left &margin, characters", margin_range};
    Number_field Printer_fontsize{"Printer_fontsize", "Font &size, points", font_size_range};
    Text_box Printer_font{"Printer_font", "&Font"};
    Label Printer_font_reason{"Printer_font_reason"};
    /// The installed fonts of fixed width; choosing one puts it into `Printer_font`.
    List_box Printer_font_list{"Printer_font_list", "Installed fonts of fixed &width"};
    Check_box Printer_fontbold{"Printer_fontbold", "&Bold"};
    Check_box Printer_fontitalic{"Printer_fontitalic", "&Italic"};
    Check_box Print_description{"Print_description", "File's &particulars on page 1"};
    Check_box Print_line_numbers{"Print_line_numbers", "Line &numbers"};
    Check_box Print_page_numbers{"Print_page_numbers", "Pa&ge numbers"};
    Check_box Print_reverse_order{"Print_reverse_order", "Last page fi&rst"};
    Check_box Barcode_file{"Barcode_file", "Bar c&odes of the file name"};
    Check_box Barcode_path{"Barcode_path", "Bar codes of the pa&th"};
    Page_picture picture{"picture", "Page 1 in small"};
    /// Why a preview cannot be shown now; empty otherwise.
    Label preview_hint{"preview_hint"};
    Button Preview_button{"Preview_button", "Pre&view..."};
    Button Defaults_button{"Defaults_button", "&Defaults"};
    Button OK_button{"OK_button", "OK"};
    Button Cancel_button{"Cancel_button", "Cancel"};

    /// Whether the text of `Printer_font` can be a font's name in the settings file.
    [[nodiscard]] bool font_can_be_named() const;

  protected:
    void on_load() override;
    void on_unload() override { tasks_.end_all(); }

  private:
    void attach_handlers();
    void make_exclusive(Check_box& one, Check_box& other);
    void show_layout(const Page_layout& layout);
    [[nodiscard]] std::array<Number_field*, 4> number_fields();
    [[nodiscard]] std::optional<Page_layout> checked_layout() const;
    [[nodiscard]] std::string font_reason() const;
    void values_changed();
    void draw(const Page_layout& layout);
    Task<> accept();
    Task<> preview();
    Task<std::optional<std::string>> preview_path();

    Platform& platform_;
    Printer& printer_;
    Operator& op_;
    Shared_state& state_;
    Program_listing& listing_;
    std::string preview_path_;  ///< chosen for the preview, when no command has a file yet
    bool showing_ = false;      ///< the fields are being filled
    Task_keeper tasks_;
};

}  // namespace kelvane
