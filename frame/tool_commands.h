#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "editing/open_program.h"
#include "frame/commands.h"
#include "frame/compare_form.h"
#include "frame/main_window.h"
#include "frame/start_form.h"

namespace kelvane {

/// The Tools menu's commands on programs.
class Tool_commands {
  public:
    Tool_commands(Kelvane_lite_form& window, Commands& commands, Open_program& open_program,
                  Start_form& start_form, Compare_form& compare_form);

    /// Of the program in the editor, from its caret's line, to which a send of it that has not come
    /// to its end brings the caret. A send of another file that has broken since the program was
    /// opened comes first: that file, at the last block that has left. Without all this the file
    /// that was sent or received last, or one that the operator chooses.
    Task<> send_from_block();
    /// A program that has been received over another one with what was there; else the program in
    /// the editor with the one received last or one that the operator chooses.
    Task<> compare();

  private:
    struct Place {
        std::string path;
        std::size_t line = 0;  ///< from 0
    };

    void send_broke(const Commands::Broken_send& broken);
    [[nodiscard]] Place likeliest_place() const;
    [[nodiscard]] Compared_program program_to_compare();

    Kelvane_lite_form& window_;
    Commands& commands_;
    Open_program& open_program_;
    Start_form& start_form_;
    Compare_form& compare_form_;
    /// What was open in the editor when a send of another file broke.
    std::optional<std::string> open_at_break_;
};

}  // namespace kelvane
