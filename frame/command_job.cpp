#include "frame/command_job.h"

#include "frame/raised.h"
#include "platform/basic_text.h"
#include "receive/check_receive.h"
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

Command_job::Command_job(Kelvane_lite_form& window, Commands& commands)
    : window_(window), state_(window.state), commands_(commands) {}

void Command_job::start() {
    window_.Timer1.set_enabled(false);
    window_.tasks.start(run());
}

Task<> Command_job::run() {
    if (const auto selected = select_machine(); !selected) {
        window_.exit_status = 1;
        const Message box = critical_box(selected.reason());
        co_await window_.ask(box);
        end(false);
        co_return;
    }
    state_.filename = state_.Command_line_filename;
    const Raised runs(state_.job_runs);
    co_await act();
}

// The built-in machine may be named too; it is never in the list, so it must not be added there.
Result<> Command_job::select_machine() {
    const Files& files = window_.platform.files;
    const std::string& machine = state_.Command_line_machine;
    if (machine.empty() || same_machine_name(machine, default_machine)) {
        state_.IO_device_name = default_machine;
        state_.IO_device = 0;
    } else {
        const auto list = files.read(files.program_path(file_names::machine_list));
        if (list.unreadable()) {
            return Failure{"Cannot read the list of machines.\n" + list.reason()};
        }
        if (!list || !find_machine(*list)) {
            if (state_.unread_files.contains(file_names::settings)) {
                return Failure{"Machine " + machine +
                               " is not in the list of machines, and which one was selected could "
                               "not be read."};
            }
            Add_machine_name(list ? 0 : 1);
        }
    }
    window_.show_machine();
    return {};
}

bool Command_job::find_machine(const std::string& list) {
    Text_reader reader(list);
    std::string name;
    for (int position = 1; reader.line(name); ++position) {
        if (same_machine_name(name, state_.Command_line_machine)) {
            state_.IO_device = position;
            state_.IO_device_name = name;
            return true;
        }
    }
    return false;
}

void Command_job::Add_machine_name(int mode) {
    Files& files = window_.platform.files;
    const std::string& name = state_.Command_line_machine;
    const std::string settings = files.program_path(port_settings_name(name));
    const bool listed = mode == 0;
    // A new one has no separator: files of this name are known to be looked for beside the
    // directory.
    const std::string list = listed ? files.program_path(file_names::machine_list)
                                    : files.program_directory() +
                                          std::string(file_names::bare(file_names::machine_list));
    Result<> added = Failure{"no file can have this name"};
    if (fault_of_machine_name(name).empty()) {
        added = listed ? add_line(files, list, name)
                       : files.replace(list, Text_writer().line(default_machine).line(name).text());
    }
    const std::string pattern = files.program_path(port_settings_name(default_machine));
    const bool copies = !files.exists(settings) && files.exists(pattern);
    added = added.and_then([&] { return copies ? files.copy(pattern, settings) : Result<>(); });
    const std::string said =
        "Machine " + name +
        (!added ? " could not be added: " + added.reason()
         : listed
             ? " is not in the list of machines and has been added to it"
             : " is not known: there is no list of machines yet, so it has been put into " + list) +
        "; this job goes to " + state_.IO_device_name;
    window_.control.set_warning(said);
    window_.job_remark = said;
    window_.platform.desktop.tell_standard_error(said);
}

Task<> Command_job::act() {
    const int event = state_.Command_line_event;
    if (event == receive_file || event == receive_binary) {
        co_await receive(event == receive_binary);
        co_return;
    }
    if (event < send_file || event > send_binary) {
        co_return;
    }
    window_.exit_status = 1;
    const bool there = co_await Check_file_exist(state_.filename);
    if (!there) {
        co_return;
    }
    if (event == print_file) {
        const bool printed = co_await commands_.print();
        window_.exit_status = printed ? 0 : 1;
    } else if (event == resequence_program) {
        const bool renumbered = co_await commands_.resequence();
        window_.exit_status = renumbered ? 0 : 1;
    } else {
        const Outcome outcome = co_await commands_.send(event == send_binary);
        end(outcome == Outcome::done);
    }
}

Task<> Command_job::receive(bool binary) {
    window_.exit_status = 1;
    window_.control.enable_stop();
    Outcome outcome = Outcome::refused;
    const bool ready = co_await Check_receive(window_.session(), state_.filename);
    if (ready) {
        outcome = co_await commands_.receive(binary);
    }
    if (binary && outcome == Outcome::done) {
        window_.exit_status = 0;  // the window stays, and shows the count of bytes
    } else {
        end(outcome == Outcome::done);
    }
}

Task<bool> Command_job::Check_file_exist(std::string name) {
    if (!name.empty() && window_.platform.files.exists(name)) {
        co_return true;
    }
    const Message missing{
        name.empty() ? "No file name has been given" : "File " + name + " does not exist",
        std::string(product_name), Message_icon::critical, Message_buttons::ok};
    co_await window_.ask(missing);
    end(false);
    co_return false;
}

void Command_job::end(bool done) {
    window_.exit_status = done ? 0 : 1;
    window_.unload();
}

}  // namespace kelvane
