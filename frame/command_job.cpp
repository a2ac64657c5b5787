// The job that a command line names: carried out once, shortly after start-up.

#include "frame/main_window.h"
#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

enum Command_event {
    send_file = 1,
    receive_file,
    print_file,
    resequence_program,
    send_binary,
    receive_binary
};

}  // namespace

void Kelvane_lite_form::run_command_line() {
    Timer1.set_enabled(false);
    select_command_line_machine();
    state.filename = state.Command_line_filename;
    act_on_command_line();
}

// The built-in machine may be named too; it is never in the list, so it must not be added there.
void Kelvane_lite_form::select_command_line_machine() {
    const std::string& machine = state.Command_line_machine;
    if (machine.empty() || upper_case(machine) == upper_case(default_machine)) {
        state.IO_device_name = default_machine;
        state.IO_device = 0;
    } else if (const auto list =
                   platform.files.read(platform.files.program_path(file_names::machine_list))) {
        if (!find_machine(*list)) {
            Add_machine_name(0);
        }
    } else {
        Add_machine_name(1);
    }
    show_machine();
}

bool Kelvane_lite_form::find_machine(const std::string& list) {
    const std::string wanted = upper_case(state.Command_line_machine);
    Text_reader reader(list);
    std::string name;
    for (int position = 1; reader.line(name); ++position) {
        if (upper_case(name) == wanted) {
            state.IO_device = position;
            state.IO_device_name = name;
            return true;
        }
    }
    return false;
}

void Kelvane_lite_form::Add_machine_name(int mode) {
    Files& files = platform.files;
    const std::string& name = state.Command_line_machine;
    const std::string settings = files.program_path(port_settings_name(name));
    Result<> added;
    if (mode == 0) {
        const std::string list = files.program_path(file_names::machine_list);
        const std::string old = files.read(list).value_or(std::string());
        const bool complete = old.empty() || old.back() == '\n';
        added = files.replace(list, old + (complete ? "" : "\r\n") + name + "\r\n");
    } else {
        // No separator: files of this name are known to be looked for beside the directory.
        added = files.replace(files.program_directory() + "Editor IO device list",
                              Text_writer().line(default_machine).line(name).text());
    }
    const std::string pattern = files.program_path(port_settings_name(default_machine));
    const bool copies = can_be_file_name(name) && !files.exists(settings) && files.exists(pattern);
    added = added.and_then([&] { return copies ? files.copy(pattern, settings) : Result<>(); });
    if (!added) {
        status.set_note("Machine " + name + " could not be added: " + added.reason());
    }
}

void Kelvane_lite_form::act_on_command_line() {
    switch (state.Command_line_event) {
        case send_file:
        case send_binary:
            if (command_file_exists()) {
                start_send(state.Command_line_event == send_binary);
            }
            break;
        case receive_file:
        case receive_binary:
            Stop_button.set_enabled(true);
            if (hooks_.Check_receive()) {
                start_receive(state.Command_line_event == receive_binary);
            }
            break;
        case print_file:
            if (command_file_exists()) {
                hooks_.Print_listing();
            }
            break;
        case resequence_program:
            if (command_file_exists()) {
                resequence();
            }
            break;
        default:
            break;
    }
}

bool Kelvane_lite_form::command_file_exists() {
    bool ok = false;
    Check_file_exist(state.filename, ok);
    return ok;
}

void Kelvane_lite_form::Check_file_exist(const std::string& name, bool& ok) {
    if (!name.empty() && platform.files.exists(name)) {
        ok = true;
        return;
    }
    box(name.empty() ? "No file name has been given" : "File " + name + " does not exist");
    unload();
}

}  // namespace kelvane
