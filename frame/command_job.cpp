// The job that a command line names: carried out once, shortly after start-up.

#include "frame/main_window.h"
#include "platform/basic_text.h"
#include "session/file_names.h"
#include "session/machine_names.h"

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

/// Adds a line at the end of a file that is there.
Result<> add_line(Files& files, const std::string& path, const std::string& line) {
    const auto old = files.read(path);
    if (!old) {
        return old.failure();
    }
    const bool complete = old->empty() || old->back() == '\n';
    return files.replace(path, *old + (complete ? "" : "\r\n") + line + "\r\n");
}

}  // namespace

void Kelvane_lite_form::run_command_line() {
    Timer1.set_enabled(false);
    if (const auto selected = select_command_line_machine(); !selected) {
        box("Cannot read the list of machines.\n" + selected.reason());
        unload();
        return;
    }
    state.filename = state.Command_line_filename;
    act_on_command_line();
}

// The built-in machine may be named too; it is never in the list, so it must not be added there.
Result<> Kelvane_lite_form::select_command_line_machine() {
    const std::string& machine = state.Command_line_machine;
    if (machine.empty() || same_machine_name(machine, default_machine)) {
        state.IO_device_name = default_machine;
        state.IO_device = 0;
    } else {
        const auto list =
            platform.files.read(platform.files.program_path(file_names::machine_list));
        if (list.unreadable()) {
            return list.failure();
        }
        if (!list || !find_machine(*list)) {
            Add_machine_name(list ? 0 : 1);
        }
    }
    show_machine();
    return {};
}

bool Kelvane_lite_form::find_machine(const std::string& list) {
    Text_reader reader(list);
    std::string name;
    for (int position = 1; reader.line(name); ++position) {
        if (same_machine_name(name, state.Command_line_machine)) {
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
        added = add_line(files, files.program_path(file_names::machine_list), name);
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
