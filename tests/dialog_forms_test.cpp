#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frame/directories_form.h"
#include "frame/information.h"
#include "support/headless_platform.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;

class Directories : public ::testing::Test {
  protected:
    Headless_platform house;
    Shared_state state;
    Set_directory_form_lite set_directory{house.platform};
    directories_form_lite form{house.platform, state, set_directory};
    const std::string directories = "/kelvane/default directories";
    const std::string types = "/kelvane/default file types";
};

TEST_F(Directories, ok_keeps_every_line_that_is_not_edited) {
    const std::string old_directories = "/nc\r\nb\r\n\r\n 1\r\ne\r\nf\r\nseven\r\n";
    const std::string old_types = "NC|*.nc|All|\r\nkept\r\n 2\r\n-1\r\n";
    house.files.put(directories, old_directories);
    house.files.put(types, old_types);
    form.show();
    EXPECT_EQ(form.directory.caption(), "/nc");
    EXPECT_THAT(form.Types_lst.items(), ElementsAre("NC  (*.nc)", "All  (*)"));
    EXPECT_EQ(form.First_type_lst.selected_text(), "All");
    EXPECT_TRUE(form.chk_add_extension.checked());
    form.OK_button.click();
    EXPECT_EQ(house.files.content(directories), old_directories);
    EXPECT_EQ(house.files.content(types), old_types);

    form.show();
    form.chk_add_extension.click();
    form.Pattern_txt.set_text("*.nc;|*.tap");
    form.Up_button.click();  // nothing above
    form.Types_lst.choose(1);
    form.Up_button.click();
    EXPECT_EQ(form.First_type_lst.selected_text(), "All");
    form.OK_button.click();
    EXPECT_EQ(house.files.content(types), "All|*|NC|*.nc;*.tap\r\nkept\r\n1\r\n0\r\n");
    EXPECT_EQ(house.file_dialog.filter, "All|*|NC|*.nc;*.tap");
    EXPECT_EQ(house.file_dialog.filter_index, 1);
    EXPECT_EQ(state.Add_extension, 0);
}

TEST_F(Directories, types_are_added_and_removed_from_nothing) {
    form.show();
    EXPECT_FALSE(form.Pattern_txt.enabled());
    for (const char* name : {"Mill", "Lathe", ""}) {
        form.Add_button.click();
        form.Description_txt.set_text(name);
    }
    form.Pattern_txt.set_text("");
    form.First_type_lst.choose(1);
    form.Types_lst.choose(0);
    form.Remove_button.click();
    EXPECT_EQ(form.First_type_lst.selected_text(), "Lathe");
    form.OK_button.click();
    EXPECT_EQ(house.files.content(types), "Lathe|*.nc|*|*\r\n\r\n1\r\n\r\n");
    EXPECT_EQ(house.files.content(directories), "\r\n\r\n\r\n\r\n\r\n\r\n");
}

TEST_F(Directories, a_folder_is_typed_or_chosen_and_must_exist) {
    form.show();
    house.windows.when_shown("Set_directory_form_lite", [this] {
        set_directory.Directory_txt.set_text("/nowhere");
        set_directory.OK_button.click();
        set_directory.Directory_txt.press_enter();
        EXPECT_TRUE(set_directory.visible());
        EXPECT_EQ(set_directory.directory_hint.caption(), "There is no such directory.");
        house.file_dialog.folder = "/nc";
        set_directory.Browse_button.click();
        set_directory.OK_button.click();
    });
    form.Set_directory_button.click();
    house.loop.run_until([this] { return !set_directory.visible(); });
    EXPECT_EQ(form.directory.caption(), "/nc");
    house.windows.when_shown("Set_directory_form_lite",
                             [this] { set_directory.Cancel_button.click(); });
    form.Set_directory_button.click();
    house.loop.run_until([this] { return !set_directory.visible(); });
    form.OK_button.click();
    EXPECT_EQ(house.file_dialog.initial_directory, "/nc");
    EXPECT_EQ(house.files.content(directories), "/nc\r\n\r\n\r\n\r\n\r\n\r\n");
}

TEST_F(Directories, what_cannot_be_stored_is_said_and_not_in_force) {
    const std::string absurd_types = "NC|*.nc\r\n\r\n-99999999999\r\n";
    house.files.put(types, absurd_types);
    for (const char* operation : {"replace", "read"}) {
        house.files.fail(operation, "default file types");
        form.show();
        form.Add_button.click();
        house.boxes.expect("Cannot write");
        form.OK_button.click();
        EXPECT_TRUE(form.visible() && state.file_types.empty());
        form.Cancel_button.click();
        house.files.repair();
        EXPECT_EQ(house.files.content(types), absurd_types);
    }
}

TEST(Information, every_item_shows_its_own_text) {
    Headless_platform house;
    Thank_you_form_lite box(house.platform);
    for (int item = 4; item >= 0; --item) {
        box.show_information(item);
        const auto& text = information_texts().at(static_cast<std::size_t>(item));
        EXPECT_EQ(box.caption(), text.title);
        EXPECT_NE(box.text.caption().find(text.body.substr(text.body.rfind("\n## ") + 1)),
                  std::string::npos);
    }
    for (const std::string& part :
         {"Version " + std::string(program_version()), std::string("built 20"),
          std::string("| Toolkit | 6.5.4 |"), house.files.program_directory()}) {
        EXPECT_NE(box.text.caption().find(part), std::string::npos) << part;
    }
    box.OK_button.click();
    box.show_information(5);
    EXPECT_FALSE(box.loaded());
}

}  // namespace
}  // namespace kelvane::testing
