#include "frame/file_commands.h"

#include "frame/file_filter.h"
#include "frame/raised.h"
#include "platform/save_path.h"
#include "receive/check_receive.h"

namespace kelvane {

namespace {

enum File_item { send, receive, print, resequence, binary_send, binary_receive };

bool takes_new_file(int item) {
    return item == receive || item == binary_receive;
}

/// What the file is chosen for.
std::string title_of(int item, const std::string& machine) {
    switch (item) {
        case send:
            return "Send to " + machine;
        case receive:
            return "Receive from " + machine;
        case print:
            return "Print";
        case resequence:
            return "Resequence";
        case binary_send:
            return "Binary send to " + machine;
        default:
            return "Binary receive from " + machine;
    }
}

std::string purpose_of(int item) {
    return item == print ? "printed" : item == resequence ? "renumbered" : "sent";
}

}  // namespace

File_commands::File_commands(Kelvane_lite_form& window, Commands& commands,
                             Open_program& open_program)
    : window_(window), commands_(commands), open_program_(open_program) {}

void File_commands::start(int item) {
    if (!choosing_ && !window_.control.closing()) {
        window_.tasks.start(run(item));
    }
}

// The shared file name changes only when the running transfer has ended: until then its end may
// still save to the old one, and leave the Stop button as "Reset".
Task<> File_commands::run(int item) {
    while (true) {
        const auto chosen = co_await choose_file(item);
        if (!chosen) {
            co_return;
        }
        const bool my_turn = co_await wait_for_turn();
        if (!my_turn) {
            co_return;
        }
        window_.state.filename = *chosen;
        window_.control.Disable_buttons();
        const bool may = co_await allowed(item);
        if (may) {
            break;
        }
        if (!takes_new_file(item)) {
            co_return;
        }
    }
    co_await act(item);
    co_await open_program_.look_at_file();
}

Task<std::optional<std::string>> File_commands::choose_file(int item) {
    const Raised choosing(choosing_);
    if (window_.control.busy() == 0) {
        window_.show_text({});
        window_.repaint();
    }
    File_dialog& dialog = window_.platform.file_dialog;
    dialog.title = title_of(item, window_.state.IO_device_name);
    auto chosen =
        co_await dialog.ask_file(takes_new_file(item) ? File_purpose::save : File_purpose::open);
    if (chosen && window_.state.Add_extension != 0 && !window_.platform.files.exists(*chosen)) {
        *chosen = with_extension(*chosen, dialog.filter);
    }
    co_return chosen;
}

/// Asked once, about a transfer that has not been given up already.
Task<bool> File_commands::may_stop() {
    const Transfer_control& control = window_.control;
    if (control.busy() == 0 || control.escape() != 0) {
        co_return true;
    }
    const Raised asking(choosing_);
    co_return co_await window_.may_stop_transfer();
}

/// Gives up what runs and waits for its end; false when a later command has been picked meanwhile,
/// or the operator wants the transfer to go on.
Task<bool> File_commands::wait_for_turn() {
    const bool stops = co_await may_stop();
    if (!stops) {
        co_return false;
    }
    const int command = ++newest_;
    window_.control.give_up();
    while (commands_.running() && command == newest_) {
        co_await window_.platform.loop.next();
    }
    if (command == newest_) {
        window_.control.give_up();
    }
    co_return command == newest_;
}

Task<bool> File_commands::allowed(int item) {
    const std::string& name = window_.state.filename;
    const bool exists = window_.platform.files.exists(name);
    if (takes_new_file(item)) {
        if (const auto refusal = Try_target_folder(window_.platform.files, name)) {
            const Message& box = *refusal;
            co_await window_.ask(box);
            co_return false;
        }
    }
    if (takes_new_file(item) && exists) {
        const Message question = overwrite_question(name);
        const Message_answer answer = co_await window_.ask(question);
        co_return answer == Message_answer::yes;
    }
    if (!takes_new_file(item) && item != File_item::resequence && !exists) {
        const Message missing{"File " + name + " does not exist", std::string(product_name),
                              Message_icon::critical, Message_buttons::ok};
        co_await window_.ask(missing);
        co_return false;
    }
    if (!takes_new_file(item)) {
        const bool may = co_await open_program_.may_be_read(name, purpose_of(item));
        co_return may;
    }
    co_return true;
}

Task<> File_commands::act(int item) {
    switch (item) {
        case send:
        case binary_send:
            co_await commands_.send(item == binary_send);
            break;
        case receive:
        case binary_receive:
            co_await commands_.receive(item == binary_receive);
            break;
        case print:
            co_await commands_.print();
            break;
        default:
            co_await commands_.resequence();
    }
}

}  // namespace kelvane
