#pragma once

#include <array>
#include <string>

#include "editing/find_bar.h"
#include "editing/program_pane.h"
#include "platform/controls.h"
#include "platform/task_keeper.h"

namespace kelvane {

/// The Edit menu: what the operator does with the program in the pane.
class Edit_commands {
  public:
    /// `tasks` keeps what the commands begin and is ended with the window.
    Edit_commands(Task_keeper& tasks, Program_pane& pane, Find_bar& find_bar);

    /// In the order of the menu.
    enum Item {
        new_program,
        open,
        save,
        save_as,
        undo,
        redo,
        cut,
        copy,
        paste,
        select_all,
        find,
        find_next,
        find_previous,
        go_to,
        other_content,  ///< the log instead of the program, or back
        follow,         ///< the block that is sent stays in sight
        larger,
        smaller,
        usual_size,
        item_count
    };
    /// Enabled as `refresh` says; Undo and Redo while there is something to take back.
    std::array<Button, item_count> EditMenuItem;
    /// The programs opened last; as many are visible as there are.
    std::array<Button, Recent_programs::most> RecentMenuItem;

    /// Opens a file that comes from elsewhere: dropped, or named on the command line.
    void open_file(const std::string& path);
    /// To be called when anything in the pane has changed: enables what can be done now.
    void refresh();

  private:
    void attach_handlers();
    void start(Task<> task);
    Task<> run_save();
    Task<> run_save_as();
    void show_other_content();

    Task_keeper& tasks_;
    Program_pane& pane_;
    Find_bar& find_bar_;
};

}  // namespace kelvane
