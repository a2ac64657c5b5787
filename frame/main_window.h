#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls.h"
#include "platform/event_loop.h"
#include "platform/fault.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/save_path.h"
#include "platform/task_keeper.h"
#include "session/operator.h"
#include "session/session.h"
#include "session/shared_state.h"
#include "session/transfer_control.h"

namespace kelvane {

/// A menu of the main window with its items in order.
struct Menu {
    std::string name;
    std::string caption;
    std::span<Button> items;
    /// Menus within this one, before the first item that begins a group.
    std::vector<Menu> submenus = {};
};

/// The main window: the editor that doubles as the transfer log, the menus, Send and Stop, the
/// timers, and the shared state of the whole program. It lives for the whole run; loading it is
/// start-up, closing it is shut-down. What its menus do is joined on from above.
class Kelvane_lite_form : public Form, public Operator {
  public:
    explicit Kelvane_lite_form(Platform& platform);

    Platform& platform;
    Shared_state state;

    Rich_text Text1{"Text1", "Program and messages"};
    Progress_bar ProgressBar1{"ProgressBar1", "Progress"};
    Button Send_button{"Send_button", "Send"};
    Button Stop_button{"Stop_button", "Stop"};
    Label status_label{"status_label"};
    State_field state_field{"state_field", "State of the transfer"};
    Button Open_file_button{"Open_file_button", "Open listing"};  ///< visible while there is one
    /// What a newcomer does first; visible until there has been a transfer.
    Label first_steps{"first_steps"};

    std::array<Button, 6> FileMenuItem;
    std::array<Button, 5> ConfigMenuItem;
    std::array<Button, 7> ToolsMenuItem;
    std::array<Button, 5> AboutMenuItem;
    /// The Edit menu, which is joined on from above.
    std::optional<Menu> edit_menu;
    [[nodiscard]] std::vector<Menu> menus();

    Timer Timer1;  ///< 100 ms: starts the command-line job
    Transfer_control control;
    /// What has been started from the window and awaits something; ended when it closes.
    Task_keeper tasks;
    /// The other windows, in the order in which the end of the program unloads them.
    std::vector<Form*> other_forms;

    [[nodiscard]] Session session();
    /// Called when a line has been added to the transfer log.
    std::function<void()> on_logged;

    void show_text(const std::string& text) override { Text1.set_text(text); }
    void show_program(std::shared_ptr<const std::string> program) override {
        Text1.share_text(std::move(program));
    }
    [[nodiscard]] const std::string& shown_text() const override { return Text1.text(); }
    void insert_text(const std::string& text) override { Text1.insert(text); }
    void select_text(std::size_t offset, std::size_t length) override {
        Text1.select(offset, length);
    }
    void repaint() override { windows().repaint(*this); }
    void set_progress(int percent) override { ProgressBar1.set_value(percent); }
    void set_note(const std::string& note) override { control.set_note(note); }
    void offer_file(const std::string& path) override;
    void beep() override { platform.desktop.beep(); }
    void configure() override { ConfigMenuItem.front().click(); }
    Task<Message_answer> ask(Message message) override;
    Task<std::optional<std::string>> ask_save_path(std::string title,
                                                   std::string proposed) override {
        return kelvane::ask_save_path(platform, {std::move(title), {}, {}, std::move(proposed)});
    }

    /// "PART.NC is being sent, 21 %. Stop it?"
    [[nodiscard]] Task<bool> may_stop_transfer();
    /// Asks once before a running transfer is given up, and what `may_close` asks; `unload` ends
    /// the program without asking.
    void close() override;
    std::function<Task<bool>()> may_close;

    /// The last trap of an event: what was going on ends, the port closed, and is told. Files stay
    /// as they are.
    void report_fault(Fault fault);
    /// The status bar names the machine that is selected now.
    void show_machine();
    /// True when start-up has refused to run beside another instance.
    [[nodiscard]] bool refused() const { return refused_; }

    /// Exit status of the program: 0; of a command-line job 1 until it has been done; 3 when
    /// another instance has been met.
    int exit_status = 0;
    /// What is to be said of the command line's job in the transfer log, too.
    std::string job_remark;

  protected:
    void on_load() override;
    void on_unload() override;

  private:
    void start_up();
    void show_title(const std::string& transfer);
    void keep_record(Transfer_record& record);
    [[nodiscard]] Task<> ask_and_close();
    [[nodiscard]] Task<> refuse(std::string reason);
    [[nodiscard]] Task<> tell_fault(Fault fault);
    [[nodiscard]] Task<> tell_unwritten_and_end(std::string reason);

    std::string offered_file_;
    bool refused_ = false;
    bool asks_to_close_ = false;
};

}  // namespace kelvane
