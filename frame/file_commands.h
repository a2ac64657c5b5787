#pragma once

#include <optional>
#include <string>

#include "editing/open_program.h"
#include "frame/commands.h"
#include "frame/main_window.h"

namespace kelvane {

/// The File menu: choosing the file while a transfer may run on, then giving up what runs, waiting
/// for its end, and starting the command.
class File_commands {
  public:
    File_commands(Kelvane_lite_form& window, Commands& commands, Open_program& open_program);

    /// A click on a menu item, 0..5. A second one while the file is being chosen does nothing.
    void start(int item);

  private:
    [[nodiscard]] Task<> run(int item);
    [[nodiscard]] Task<std::optional<std::string>> choose_file(int item);
    [[nodiscard]] Task<bool> may_stop();
    [[nodiscard]] Task<bool> wait_for_turn();
    [[nodiscard]] Task<bool> allowed(int item);
    [[nodiscard]] Task<> act(int item);

    Kelvane_lite_form& window_;
    Commands& commands_;
    Open_program& open_program_;
    bool choosing_ = false;
    int newest_ = 0;  ///< number of the command picked last
};

}  // namespace kelvane
