// The File menu: choosing the file, giving up what runs, and starting the command.

#include "frame/file_filter.h"
#include "frame/main_window.h"
#include "platform/basic_text.h"

namespace kelvane {

namespace {

enum File_item { send, receive, print, resequence_file, binary_send, binary_receive };

bool takes_new_file(int item) {
    return item == receive || item == binary_receive;
}

}  // namespace

// The shared file name changes only when the running transfer has ended: until then its end may
// still save to the old one, and leave the Stop button as "Reset".
void Kelvane_lite_form::file_menu(int item) {
    show_text({});
    windows().repaint(*this);
    const auto chosen = choose_file(takes_new_file(item) ? File_purpose::save : File_purpose::open);
    if (!chosen) {
        return;
    }
    give_up_running_transfer();
    const int command = ++newest_command_;
    control.work.run_when_done([this, item, command, name = *chosen] {
        wait_for_closed_port(command);
        if (!closing() && command == newest_command_) {
            give_up_running_transfer();
            state.filename = name;
            act_on_file_command(item);
        }
    });
}

std::optional<std::string> Kelvane_lite_form::choose_file(File_purpose purpose) {
    const auto chosen = platform.file_dialog.choose_file(purpose);
    if (!chosen || closing()) {
        return std::nullopt;
    }
    const bool completes = state.Add_extension != 0 && !platform.files.exists(*chosen);
    return completes ? with_extension(*chosen, platform.file_dialog.filter) : *chosen;
}

void Kelvane_lite_form::give_up_running_transfer() {
    state.escape = 1;
    state.IOsend_cancel = 1;
    state.busy = 0;
    state.Stopped = 0;
    Stop_button.set_caption("Stop");
}

void Kelvane_lite_form::wait_for_closed_port(int command) {
    while (platform.port.is_open() && command == newest_command_) {
        platform.loop.process_events();
    }
}

void Kelvane_lite_form::act_on_file_command(int item) {
    Disable_buttons();
    switch (item) {
        case send:
        case binary_send:
            if (file_is_there()) {
                start_send(item == binary_send);
            }
            break;
        case receive:
        case binary_receive:
            if (may_overwrite()) {
                start_receive(item == binary_receive);
            } else {
                file_menu(item);
            }
            break;
        case print:
            if (file_is_there()) {
                hooks_.Print_listing();
            }
            break;
        default:
            resequence();
    }
}

bool Kelvane_lite_form::file_is_there() {
    if (platform.files.exists(state.filename)) {
        return true;
    }
    box("File " + state.filename + " does not exist");
    return false;
}

bool Kelvane_lite_form::may_overwrite() {
    if (!platform.files.exists(state.filename)) {
        return true;
    }
    const Message_answer answer =
        box("Warning ... File " + state.filename + "\nalready exists. Overwrite existing file?",
            Message_icon::exclamation, Message_buttons::yes_no, "Overwrite?");
    return answer == Message_answer::yes;
}

void Kelvane_lite_form::start_send(bool binary) {
    state.TX_binary = binary ? -1 : 0;
    if (binary) {
        state.binaryfilename = state.filename;
    }
    hooks_.Start_transfer(0);
}

void Kelvane_lite_form::start_receive(bool binary) {
    state.RX_binary = binary;
    Stop_button.set_enabled(true);
    hooks_.Start_transfer(1);
}

bool Kelvane_lite_form::refuse_backup_file() {
    const std::string& name = state.filename;
    if (name.size() < 4 || lower_case(name.substr(name.size() - 4)) != ".bak") {
        return false;
    }
    box("Can't resequence files with a .BAK extension\nbecause a .BAK file is automatically "
        "created",
        Message_icon::critical, Message_buttons::ok, "Can't resequence");
    return true;
}

void Kelvane_lite_form::resequence() {
    if (refuse_backup_file()) {
        return;
    }
    state.escape = 0;
    state.Stopped = 0;
    state.IOsend_cancel = 0;
    Stop_button.set_enabled(true);
    if (hooks_.Make_scratchpad_copy(state.filename)) {
        hooks_.show_resequence();
    }
}

}  // namespace kelvane
