#pragma once

#include <memory>

#include "editing/edit_commands.h"
#include "editing/find_bar.h"
#include "editing/open_program.h"
#include "editing/program_pane.h"
#include "frame/comm_form.h"
#include "frame/command_job.h"
#include "frame/commands.h"
#include "frame/compare_form.h"
#include "frame/directories_form.h"
#include "frame/file_commands.h"
#include "frame/help_form.h"
#include "frame/information.h"
#include "frame/main_window.h"
#include "frame/set_directory_form.h"
#include "frame/start_form.h"
#include "frame/tool_commands.h"
#include "frame/transfer_log_form.h"
#include "line/line_monitor_form.h"
#include "line/line_watch.h"
#include "line/test_line_form.h"
#include "machines/advanced_form.h"
#include "machines/configure_form.h"
#include "machines/select_device_form.h"
#include "platform/platform.h"
#include "print/page_layout_form.h"
#include "print/program_listing.h"
#include "receive/receive.h"
#include "receive/save_received.h"
#include "resequence/resequence_form.h"
#include "resequence/resequence_run.h"
#include "transmit/code_tables.h"
#include "transmit/transfer.h"

namespace kelvane {

/// Every form and routine of the program, built on a platform and joined: which menu command starts
/// what is decided here and nowhere else.
class Program {
  public:
    /// `platform` outlives the program.
    explicit Program(Platform& platform);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    /// Ends all long work first: it holds references to what goes next.
    ~Program() { window.tasks.end_all(); }

    /// Start-up: loads the main window and, unless it has refused, shows it.
    void start();
    /// The end that nobody can be asked about: changes of the program in the pane are kept for the
    /// next run.
    void end_unasked();

    Kelvane_lite_form window;
    Comm_form_lite comm_form;
    const Code_tables code_tables;
    Receive receive;
    Save_received save_received;
    Transfer transfer;
    Program_listing listing;
    Configure_IO_advanced_lite advanced_form;
    configure_IO_lite configure_form;
    select_device_form_lite select_device_form;
    Set_directory_form_lite set_directory_form;
    directories_form_lite directories_form;
    Page_layout_form_lite page_layout_form;
    Thank_you_form_lite information_form;
    Help_form help_form;
    resequence_form_lite resequence_form;
    Resequence_run resequence_run;
    Line_watch line_watch;
    Line_monitor_form line_monitor_form;
    Test_line_form test_line_form;
    Transfer_log_form transfer_log_form;
    Open_program open_program;
    Program_pane pane;
    Find_bar find_bar;
    Edit_commands edit_commands;
    Start_form start_form;
    Compare_form compare_form;
    Commands commands;
    File_commands file_commands;
    Command_job command_job;
    Tool_commands tool_commands;

  private:
    void join_menus();
    [[nodiscard]] Tested_line selected_line() const;
};

}  // namespace kelvane
