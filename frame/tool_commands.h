#pragma once

#include <optional>
#include <string>

#include "frame/commands.h"
#include "frame/compare_form.h"
#include "frame/main_window.h"
#include "frame/start_form.h"

namespace kelvane {

/// The Tools menu's commands on programs.
class Tool_commands {
  public:
    Tool_commands(Kelvane_lite_form& window, Commands& commands, Start_form& start_form,
                  Compare_form& compare_form);

    /// For the send that has come to no end, at the last block that has left; else for the file
    /// that was sent, received or edited last; else the operator chooses one.
    Task<> send_from_block();
    /// The file that was worked on last with another; the last program received with what was in
    /// its file before.
    Task<> compare();

  private:
    Kelvane_lite_form& window_;
    Commands& commands_;
    Start_form& start_form_;
    Compare_form& compare_form_;
};

}  // namespace kelvane
