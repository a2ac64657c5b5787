#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "editing/lead_in.h"
#include "frame/read_program.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"
#include "session/shared_state.h"
#include "session/transfer_control.h"
#include "transmit/program_part.h"

namespace kelvane {

/// "Send from a block": the operator chooses the line, reads what the control should remember
/// there, and edits the blocks that are to be sent before it. The form sends nothing.
class Start_form : public Form {
  public:
    /// All outlive the form. `control` says whether other work is on, beside which nothing can be
    /// sent; `state` which machine is selected.
    Start_form(Platform& platform, const Transfer_control& control, const Shared_state& state);

    Label program_label{"program_label"};  ///< file and machine
    Button Program_button{"Program_button", "&Program..."};
    /// A line's number or a block's, as "120" and "N120".
    Text_box Line_txt{"Line_txt", "Start at &line, or N number:"};
    /// Why there is nothing to send yet; empty when there is.
    Label start_hint{"start_hint"};
    List_box Blocks_lst{"Blocks_lst", "&Blocks there"};
    List_box Warnings_lst{"Warnings_lst", "&Warnings"};
    List_box State_lst{"State_lst", "What the c&ontrol remembers before that line"};
    /// Seen while the program does not say which it is for.
    Label Machining_frame{"Machining_frame", "The program may be for a"};
    Option_button Mill_option{"Mill_option", "mill"};
    Option_button Lathe_option{"Lathe_option", "lathe"};
    /// Lines end with LF.
    Text_box Lead_in_txt{"Lead_in_txt", "Sent first - read and &edit:"};
    Button Send_button{"Send_button", "Send from here"};
    Button Cancel_button{"Cancel_button", "Cancel"};

    /// What the operator wants sent.
    struct Start {
        std::string path;  ///< of the whole program
        Program_part part;
    };
    /// Shows the form with a program and a line of it, from 0, over the other windows. No value
    /// unless the operator has pressed "Send from here".
    Task<std::optional<Start>> ask(std::string path, std::size_t line);

  protected:
    void on_unload() override;

  private:
    void attach_handlers();
    Task<> choose_program();
    Task<> read_program(std::string path, std::size_t line);
    void place_changed();
    Task<> look_up();
    Task<std::optional<std::size_t>> wanted_line();
    Task<> read_start();
    void show_blocks();
    void show_start(const Start_reading& reading);
    void show_nothing(std::string why);
    void begin_again(Task<> work);
    void accept();
    [[nodiscard]] std::optional<Machining> chosen_machining() const;
    [[nodiscard]] Program_part part() const;

    Platform& platform_;
    const Transfer_control& control_;
    const Shared_state& state_;
    Read_program program_;
    std::size_t line_ = 0;   ///< chosen, from 0
    std::size_t first_ = 0;  ///< line of the first row of `Blocks_lst`
    bool settling_ = false;  ///< the controls are being set by the form
    std::optional<Start> start_;
    Task_keeper tasks_;
    Task_keeper dialogs_;
};

}  // namespace kelvane
