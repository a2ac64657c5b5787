#pragma once

#include <string>
#include <utility>
#include <vector>

#include "frame/set_directory_form.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"
#include "session/shared_state.h"

namespace kelvane {

/// "Files and directories": the default directory and the file dialog's types. It edits the lines
/// of its two files that start-up reads and leaves all others as they are; what it stores is in
/// force at once.
class directories_form_lite : public Form {
  public:
    /// OK puts the choices into `state` and the file dialog, and stores them. A file that cannot be
    /// read or written is told in a box; nothing is stored over one that could not be read. All
    /// outlive the form.
    directories_form_lite(Platform& platform, Shared_state& state,
                          Set_directory_form_lite& set_directory);

    Label directory_label{"directory_label", "Default directory:"};
    Label directory{"directory"};  ///< the path, or what stands in for an empty one
    Button Set_directory_button{"Set_directory_button", "&Set directory..."};
    List_box Types_lst{"Types_lst", "File &types:"};
    Text_box Description_txt{"Description_txt", "&Description:"};  ///< of the selected type
    Text_box Pattern_txt{"Pattern_txt", "&Patterns:"};             ///< "*.nc;*.tap"
    Button Add_button{"Add_button", "&Add"};
    Button Remove_button{"Remove_button", "&Remove"};
    Button Up_button{"Up_button", "Move &up"};
    List_box First_type_lst{"First_type_lst", "Type shown &first:"};
    Check_box chk_add_extension{"chk_add_extension",
                                "Add the first &extension to names typed without one"};
    Button OK_button{"OK_button", "OK"};
    Button Cancel_button{"Cancel_button", "Cancel"};

  protected:
    void on_load() override;
    void on_unload() override { tasks_.end_all(); }

  private:
    using Types = std::vector<std::pair<std::string, std::string>>;

    void attach_buttons();
    void show_types(int selected);
    void show_selected_type();
    void type_edited();
    void add_type();
    void remove_type();
    void move_type_up();
    Task<> set_directory();
    void show_directory();
    Task<> accept();
    [[nodiscard]] Result<> store();
    void put_in_force();
    [[nodiscard]] std::string filter() const;

    Platform& platform_;
    Shared_state& state_;
    Set_directory_form_lite& set_directory_;
    std::vector<std::string> directory_lines_;
    std::vector<std::string> type_lines_;
    bool unread_ = false;  ///< a file was there and could not be read: nothing is stored
    std::string directory_path_;
    Types types_;
    bool showing_ = false;  ///< the fields are being filled
    Task_keeper tasks_;
};

}  // namespace kelvane
