#pragma once

#include <functional>
#include <string>
#include <utility>

#include "frame/program.h"
#include "session/file_names.h"
#include "support/headless_platform.h"
#include "support/plain_settings.h"

namespace kelvane::testing {

using namespace std::chrono_literals;

/// Text in a tape code, as it should stand on the wire.
inline std::string in_tape_code(std::string_view text, std::size_t code) {
    static const Code_tables tables = Build_code_tables();
    std::string bytes;
    for (const char c : text) {
        bytes += static_cast<char>(tables.code_table[static_cast<unsigned char>(c)][code]);
    }
    return bytes;
}
inline std::string even(std::string_view text) {
    return in_tape_code(text, 0);
}
inline std::string odd(std::string_view text) {
    return in_tape_code(text, 1);
}
inline std::string eia_code(std::string_view text) {
    return in_tape_code(text, 3);
}

inline constexpr const char* xon = "\x11";
inline constexpr const char* xoff = "\x93";

/// The whole program on doubles, and verbs to tell what happens on the shop floor. It is started by
/// the first verb that needs it, so that files can be laid out before.
class Shop_floor {
  public:
    Shop_floor() = default;
    /// With a plain machine "Mill" but for `lines`, and `part` as /nc/PART.NC.
    Shop_floor(const Setting_lines& lines, const std::string& part) {
        machine_file("Mill", lines);
        program("PART.NC", part);
    }

    /// A settings file of plain lines, but for `lines`; and selects that machine.
    void machine_file(const std::string& name, const Setting_lines& lines = {}) {
        own_file(port_settings_name(name), plain_settings(lines));
        own_file(file_names::settings, "1\r\n" + name + "\r\n");
    }
    /// A program in /nc, by its bare name.
    void program(const std::string& name, const std::string& content) {
        desk.files.put("/nc/" + name, content);
    }
    /// Start-up, once, with a command line if any.
    void start(const std::string& command_line = {}) {
        if (!std::exchange(started_, true)) {
            desk.desktop.command = command_line;
            program_.start();
        }
    }
    /// Lets time pass.
    void pass(Clock_time span) { desk.loop.run_for(span); }
    void wait_until_idle() {
        run_until([this] { return idle(); });
    }

    /// File > Send of NAME in /nc, or another item; the machine asks with DC1 after 100 ms.
    void send(const std::string& name = "PART.NC", std::size_t item = 0) {
        machine().after(100ms, [this] { machine().sends(xon); });
        menu(item, name);
    }
    /// Returns when the command has ended, or waits for the machine's data.
    void menu(std::size_t file_item, const std::string& name = "PART.NC") {
        pick(file_item, name);
        run_until([this] {
            const Transfer_control& control = program_.window.control;
            return program_.window.tasks.empty() ||
                   (control.state() == Transfer_state::waiting_for_data && control.escape() == 0);
        });
    }
    /// The click alone.
    void pick(std::size_t file_item, const std::string& name) {
        start();
        const bool saves = file_item == 1 || file_item == 5;
        desk.file_dialog.answers.push_back({saves ? File_purpose::save : File_purpose::open,
                                            name.starts_with('/') ? name : "/nc/" + name});
        window().FileMenuItem[file_item].click();
    }
    /// File > Receive into /nc/NAME: armed on return.
    void receive(const std::string& name = "NEW.NC") { menu(1, name); }
    /// As `receive`, then the machine sends `bytes`, and the time-out passes.
    void receive_from_machine(const std::string& name, const std::string& bytes) {
        receive(name);
        machine().sends(bytes);
        run_until([this] { return program_.window.tasks.empty(); });
    }

    [[nodiscard]] std::string file(const std::string& name) const {
        return desk.files.content("/nc/" + name);
    }
    /// The working copy of a send, or the staging file of a receive.
    [[nodiscard]] std::string scratch() const {
        return desk.files.content(desk.files.program_path(file_names::scratch));
    }
    [[nodiscard]] const std::string& log() const { return program_.window.Text1.text(); }
    [[nodiscard]] const std::string& status() { return window().status_label.caption(); }
    [[nodiscard]] const std::string& received() const { return desk.machine.received(); }
    [[nodiscard]] Kelvane_lite_form& window() { return program_.window; }
    [[nodiscard]] Shared_state& state() { return program_.window.state; }
    [[nodiscard]] Program& all() { return program_; }
    [[nodiscard]] Scripted_machine& machine() { return desk.machine; }
    [[nodiscard]] Scripted_message_box& boxes() { return desk.boxes; }
    [[nodiscard]] bool idle() const {
        const Transfer_control& control = program_.window.control;
        return control.busy() == 0 && control.sending() == 0 && !desk.machine.is_open();
    }

    Headless_platform desk;

  private:
    /// Whatever has been waited for: the computer may sleep again unless a transfer is on.
    void run_until(const std::function<bool()>& true_at_last) {
        desk.loop.run_until(true_at_last);
        EXPECT_EQ(desk.desktop.awake, window().control.busy() != 0) << status();
    }
    void own_file(std::string_view name, const std::string& content) {
        desk.files.put(desk.files.program_path(name), content);
    }

    Program program_{desk.platform};
    bool started_ = false;
};

}  // namespace kelvane::testing
