#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frame/main_window.h"
#include "frame/settings_files.h"
#include "print/page_layout_form.h"
#include "support/headless_platform.h"

namespace kelvane {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Print_layout : public ::testing::Test {
  protected:
    void put(const char* content) {
        system.files.put(file, content);
        read_page_layout(system.files, window.state);
    }

    testing::Headless_platform system;
    Kelvane_lite_form window{system.platform};
    Program_listing listing{system.platform, window, window.control, window.state};
    Page_layout_form_lite form{system.platform, window, window.state, listing};
    const std::string file = system.files.program_path("\\Editor page layout settings");
};

constexpr const char* every_value_changed =
    "60\r\n0\r\n0\r\n0\r\n80\r\n0\r\n\"DejaVu Sans Mono, Bold\"\r\n8\r\n#TRUE#\r\n#TRUE#\r\n"
    "1\r\n0\r\n1\r\n";

TEST_F(Print_layout, written_values_are_read_back) {
    form.load();
    form.Lines_per_page.box.set_text("60");
    form.line_length.box.set_text("80");
    form.margin.box.set_text("0");
    form.Printer_fontsize.box.set_text("8");
    form.Printer_font.set_text("DejaVu Sans Mono, Bold");
    for (Check_box* box :
         {&form.Printer_fontbold, &form.Printer_fontitalic, &form.Print_description,
          &form.Print_line_numbers, &form.Print_page_numbers, &form.Print_reverse_order,
          &form.Barcode_file, &form.Barcode_path}) {
        box->click();
    }
    EXPECT_FALSE(form.Barcode_file.checked()) << "only one kind of bar code";
    form.OK_button.click();
    EXPECT_EQ(system.files.content(file), every_value_changed);
    EXPECT_FALSE(form.loaded());
    window.state = Shared_state{};
    read_page_layout(system.files, window.state);
    form.load();
    form.OK_button.click();
    EXPECT_EQ(system.files.content(file), every_value_changed) << "read, shown and written again";
}

TEST_F(Print_layout, values_out_of_range_are_refused_in_place) {
    const struct {
        Text_box& box;
        Label& reason;
        const char *text, *said;
    } cases[] = {
        {form.Lines_per_page.box, form.Lines_per_page.reason, "9", "from 10 to 200"},
        {form.Lines_per_page.box, form.Lines_per_page.reason, "201", "from 10 to 200"},
        {form.line_length.box, form.line_length.reason, "", "from 20 to 250"},
        {form.margin.box, form.margin.reason, "-1", "from 0 to 60"},
        {form.Printer_fontsize.box, form.Printer_fontsize.reason, "99999999999", "from 4 to 72"},
        {form.Printer_font, form.Printer_font_reason, "A\"B", "without double quotes"},
        {form.Printer_font, form.Printer_font_reason, "  ", "name of a font"},
    };
    for (const auto& c : cases) {
        form.load();
        c.box.set_text(c.text);
        EXPECT_THAT(c.reason.caption(), HasSubstr(c.said));
        form.OK_button.click();
        EXPECT_TRUE(form.loaded()) << c.text;
        EXPECT_FALSE(system.files.exists(file)) << c.text;
        form.Defaults_button.click();
        EXPECT_THAT(form.Lines_per_page.reason.caption(), IsEmpty());
        form.Cancel_button.click();
    }
}

TEST_F(Print_layout, a_file_that_cannot_be_written_keeps_layout_and_dialog) {
    put(every_value_changed);
    form.load();
    form.margin.box.set_text("7");
    system.files.fail("replace", "settings");
    system.boxes.expect("Can't write the page layout");
    form.OK_button.click();
    EXPECT_TRUE(form.loaded() && window.state.page_layout.margin == 0);
}

TEST_F(Print_layout, the_picture_follows_the_fields) {
    form.load();
    const std::size_t rows = form.picture.page().rows.size();
    form.Lines_per_page.box.set_text("40");
    EXPECT_EQ(form.picture.page().rows.size(), rows - 15);
    form.margin.box.set_text("20");
    EXPECT_EQ(form.picture.page().rows[2].find("File:"), 20U);
    EXPECT_EQ(form.picture.page().barcode_rows, 0);
    form.Barcode_file.click();
    EXPECT_EQ(form.picture.page().rows[0].find("File:"), 20U);
    EXPECT_EQ(form.picture.page().barcode_rows, 6);
}

TEST_F(Print_layout, preview_shows_the_values_typed_and_keeps_the_old_ones) {
    form.load();
    form.margin.box.set_text("60");
    form.Preview_button.click();
    EXPECT_THAT(system.printer.pages, IsEmpty()) << "no file chosen";
    system.files.put("/nc/a.nc", "M30");
    system.file_dialog.answers.push_back({File_purpose::open, "/nc/a.nc"});
    form.Preview_button.click();
    system.loop.run_until([this] { return listing.may_start(); });
    ASSERT_EQ(system.printer.pages.size(), 1U);
    EXPECT_EQ(system.printer.pages[0].find("File:"), 62U);
    EXPECT_EQ(system.printer.destination, Print_destination::preview);
    EXPECT_EQ(window.state.page_layout.margin, 5);
    const Transfer_control::Running transfer(window.control);
    ASSERT_TRUE(window.control.begin(Direction::send));
    form.Preview_button.click();
    EXPECT_THAT(form.preview_hint.caption(), HasSubstr("Not while"));
}

}  // namespace
}  // namespace kelvane
