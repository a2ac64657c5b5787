#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/form.h"

namespace kelvane {

/// What the main window's menus and the command-line job start but cannot see, because it stands
/// above the window. All must be filled before the window is loaded.
struct Command_hooks {
    /// 0 sends, 1 receives; returns when a send has ended or a receive is armed.
    std::function<void(int mode)> Start_transfer;
    /// Prints `filename`.
    std::function<void()> Print_listing;
    /// Prepares the target file of a command-line receive; false when the job has ended there.
    std::function<bool()> Check_receive;
    /// Writes the working copy of a file; false, after its message, when it could not be written.
    std::function<bool(const std::string& path)> Make_scratchpad_copy;
    std::function<void()> show_resequence;      ///< modal
    std::function<void()> show_configuration;   ///< modeless
    std::function<void()> show_machine_choice;  ///< modeless
    std::function<void()> Select_printer;
    std::function<void()> Show_page_layout;  ///< modal
    std::function<void()> Set_directories;   ///< modal
    /// The information box of an About menu item, 0..4.
    std::function<void(int item)> show_information;
    /// The other windows, in the order in which the end of the program unloads them.
    std::vector<Form*> other_forms;

    [[nodiscard]] bool complete() const {
        return Start_transfer && Print_listing && Check_receive && Make_scratchpad_copy &&
               show_resequence && show_configuration && show_machine_choice && Select_printer &&
               Show_page_layout && Set_directories && show_information && !other_forms.empty();
    }
};

}  // namespace kelvane
