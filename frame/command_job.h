#pragma once

#include <string>

#include "frame/commands.h"
#include "frame/main_window.h"

namespace kelvane {

/// The job that a command line names: carried out once, shortly after start-up. A transfer ends the
/// program, whatever has ended it, with exit status 0 when it was done and 1 when not; only a
/// binary receive that is done leaves the window open.
class Command_job {
  public:
    Command_job(Kelvane_lite_form& window, Commands& commands);

    /// Timer1's tick.
    void start();

  private:
    [[nodiscard]] Task<> run();
    [[nodiscard]] Result<> select_machine();
    [[nodiscard]] bool find_machine(const std::string& list);
    /// 0: appends the command line's machine to the machine list; 1: creates the list anew. Then
    /// gives a machine that has no settings file a copy of the default machine's.
    void Add_machine_name(int mode);
    [[nodiscard]] Task<> act();
    [[nodiscard]] Task<> receive(bool binary);
    [[nodiscard]] Task<bool> Check_file_exist(std::string name);
    void end(bool done);

    Kelvane_lite_form& window_;
    Shared_state& state_;
    Commands& commands_;
};

}  // namespace kelvane
