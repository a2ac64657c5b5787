#include "support/shop_floor.h"

#include "frame/file_names.h"
#include "frame/machine_file_names.h"
#include "support/plain_settings.h"

namespace kelvane::testing {

using namespace std::chrono_literals;

std::string in_tape_code(std::string_view text, int code) {
    static const Code_tables tables = Build_code_tables();
    std::string bytes;
    for (const char c : text) {
        bytes += static_cast<char>(
            tables.code_table[static_cast<unsigned char>(c)][static_cast<std::size_t>(code)]);
    }
    return bytes;
}

Shop_floor::Shop_floor() : program_(desk.platform) {}

void Shop_floor::machine_file(const std::string& machine,
                              std::initializer_list<std::pair<int, std::string>> lines) {
    desk.files.put(desk.files.program_path(port_settings_name(machine)),
                   plain_settings({lines.begin(), lines.end()}));
    desk.files.put(desk.files.program_path(file_names::settings), "1\r\n" + machine + "\r\n");
}

void Shop_floor::program(const std::string& name, const std::string& content) {
    desk.files.put("/nc/" + name, content);
}

void Shop_floor::start(const std::string& command_line) {
    if (!started_) {
        started_ = true;
        desk.desktop.command = command_line;
        program_.start();
    }
}

void Shop_floor::menu(int file_item, const std::string& name) {
    start();
    desk.file_dialog.answers.push_back("/nc/" + name);
    program_.window.FileMenuItem[static_cast<std::size_t>(file_item)].click();
}

void Shop_floor::send(const std::string& name) {
    desk.loop.after(100ms, [this] { desk.machine.sends(xon); });
    menu(0, name);
}

void Shop_floor::send_without_start(const std::string& name) {
    menu(0, name);
}

void Shop_floor::binary_send(const std::string& name) {
    desk.loop.after(100ms, [this] { desk.machine.sends(xon); });
    menu(4, name);
}

void Shop_floor::receive(const std::string& name) {
    menu(1, name);
}

void Shop_floor::binary_receive(const std::string& name) {
    menu(5, name);
}

void Shop_floor::receive_from_machine(const std::string& name, const std::string& bytes) {
    receive(name);
    desk.machine.sends(bytes);
    desk.loop.run_until([this] { return !desk.machine.is_open(); });
}

void Shop_floor::presses(Button& button, Clock_time when) {
    desk.loop.after(when, [&button] { button.click(); });
}

std::string Shop_floor::file(const std::string& name) const {
    return desk.files.content("/nc/" + name);
}

std::string Shop_floor::scratch(std::string_view name) const {
    return desk.files.content(desk.files.program_path(name));
}

bool Shop_floor::idle() const {
    const Shared_state& state = program_.window.state;
    return state.busy == 0 && state.sending == 0 && !desk.machine.is_open();
}

}  // namespace kelvane::testing
