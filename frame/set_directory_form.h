#pragma once

#include <optional>
#include <string>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"

namespace kelvane {

/// Asks for a folder: typed, or chosen in the system's dialog. Folders that do not exist are
/// refused in place.
class Set_directory_form_lite : public Form {
  public:
    /// `platform` outlives the form.
    explicit Set_directory_form_lite(Platform& platform);

    Text_box Directory_txt{"Directory_txt", "&Directory:"};
    Button Browse_button{"Browse_button", "&Browse..."};
    /// Why the text cannot be taken; empty when it can.
    Label directory_hint{"directory_hint"};
    Button OK_button{"OK_button", "OK"};
    Button Cancel_button{"Cancel_button", "Cancel"};

    /// Shows the form over the others, beginning with `start`. The folder, which may be empty for
    /// "no default"; no value when the operator cancels.
    Task<std::optional<std::string>> ask(std::string start);

  protected:
    void on_unload() override { tasks_.end_all(); }

  private:
    void directory_changed();
    Task<> browse();
    void accept();

    Platform& platform_;
    bool accepted_ = false;
    Task_keeper tasks_;
};

}  // namespace kelvane
