#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>

#include "frame/command_hooks.h"
#include "platform/controls.h"
#include "platform/event_loop.h"
#include "platform/fault.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "session/operator.h"
#include "session/shared_state.h"
#include "session/transfer_control.h"
#include "session/transfer_status.h"

namespace kelvane {

/// A menu of the main window with its items in order.
struct Menu {
    std::string name;
    std::string caption;
    std::span<Button> items;
};

/// The main window: the editor that doubles as the transfer log, the menus, Send and Stop, the
/// timers, and the shared state of the whole program. It lives for the whole run; loading it is
/// start-up, closing it is shut-down.
class Kelvane_lite_form : public Form, public Operator {
  public:
    explicit Kelvane_lite_form(Platform& platform);

    /// Fills in what stands above the window; before `load`. An incomplete set ends the program at
    /// once (a fault of construction, not of operation).
    void set_hooks(Command_hooks hooks);

    Platform& platform;
    Shared_state state;

    Rich_text Text1{"Text1", "Program and messages"};
    Progress_bar ProgressBar1{"ProgressBar1", "Progress"};
    Button Send_button{"Send_button", "Send"};
    Button Stop_button{"Stop_button", "Stop"};
    Label status_label{"status_label"};

    std::array<Button, 6> FileMenuItem;
    std::array<Button, 5> ConfigMenuItem;
    std::array<Button, 5> AboutMenuItem;
    [[nodiscard]] std::array<Menu, 3> menus();

    Timer Timer1;             ///< 100 ms: starts the command-line job
    Timer Timer5;             ///< 50 ms: receive poll
    Timer Timer6;             ///< 3000 ms or the machine's time-out: end of receive
    Timer Timer8;             ///< 1000 ms: answer to a lone DC2
    Timer Timer9;             ///< character delay of the sender
    Timer Timer12;            ///< block delay of the sender
    Timer Timer17;            ///< `Delay`
    Timer exclamation_timer;  ///< pause of a "!" line

    Transfer_status status;
    Transfer_control control;

    /// Send and Stop both live, or both dead.
    void Enable_buttons();
    void Disable_buttons();
    /// Waits at least `count` milliseconds, yielding; returns at once for 0 or less.
    void Delay(int count);
    /// Starts `timer` and waits, yielding, until it has disabled itself; ends early on `escape`.
    void wait_for_timer(Timer& timer);
    /// Shows a critical box and unloads the window, which ends the program, when no name is given
    /// or the file does not exist; `ok` becomes true when it does.
    void Check_file_exist(const std::string& name, bool& ok);
    /// 0: appends the command line's machine to the machine list; 1: creates the list anew. Then
    /// gives a machine that has no settings file a copy of the default machine's.
    void Add_machine_name(int mode);

    void show_text(const std::string& text) override { Text1.set_text(text); }
    [[nodiscard]] const std::string& shown_text() const override { return Text1.text(); }
    void insert_text(const std::string& text) override { Text1.insert(text); }
    void select_text(std::size_t offset, std::size_t length) override {
        Text1.select(offset, length);
    }
    void repaint() override { windows().repaint(*this); }
    void set_progress(int percent) override { ProgressBar1.set_value(percent); }
    void set_note(const std::string& note) override { status.set_note(note); }
    void beep() override { platform.desktop.beep(); }
    /// What every end of a transfer does: buttons enabled, log empty, progress 0.
    void reset_transfer_display();
    Message_answer ask(const Message& message) override {
        return platform.message_box.show(message);
    }
    /// The last trap of an event: closes the port, says what happened, and is idle again. Files
    /// stay as they are.
    void report_fault(Fault fault);
    /// True from the moment the window is being closed: nothing new may be started.
    [[nodiscard]] bool closing() const { return control.closing(); }
    /// The status bar names the machine that is selected now.
    void show_machine();

  protected:
    void on_load() override;
    void on_unload() override;

  private:
    void attach_handlers();
    void start_up();
    void shut_down();

    void file_menu(int item);
    [[nodiscard]] std::optional<std::string> choose_file(File_purpose purpose);
    void give_up_running_transfer();
    /// Ends early when a later File command has been picked: the port may be open for that one.
    void wait_for_closed_port(int command);
    void act_on_file_command(int item);
    [[nodiscard]] bool file_is_there();
    [[nodiscard]] bool may_overwrite();
    void start_send(bool binary);
    void start_receive(bool binary);
    [[nodiscard]] bool refuse_backup_file();
    void resequence();
    void send_click();
    void stop_click();

    void run_command_line();
    Result<> select_command_line_machine();
    [[nodiscard]] bool find_machine(const std::string& list);
    void act_on_command_line();
    [[nodiscard]] bool command_file_exists();

    Command_hooks hooks_;
    bool refused_ = false;
    int newest_command_ = 0;  ///< number of the File command picked last
};

}  // namespace kelvane
