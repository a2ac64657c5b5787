#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "program/program.h"
#include "support/headless_platform.h"

namespace kelvane::testing {

/// Text in a tape code, as it should stand on the wire.
std::string in_tape_code(std::string_view text, int code);
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

/// The whole program on doubles, and verbs to tell what happens on the shop floor.
class Shop_floor {
  public:
    /// Starts nothing yet, so that files can be laid out first.
    Shop_floor();

    /// A settings file of 25 plain lines (COM1, 9600, one stop bit, no parity, Xon/Xoff, CR LF, no
    /// leader or trailer, nothing ignored), with some lines replaced; and selects that machine.
    void machine_file(const std::string& machine,
                      std::initializer_list<std::pair<int, std::string>> lines = {});
    /// A program in /nc, by its bare name.
    void program(const std::string& name, const std::string& content);

    /// Start-up, once, with a command line if any. Other verbs call it.
    void start(const std::string& command_line = {});
    /// Lets time pass.
    void pass(Clock_time span) { desk.loop.run_for(span); }

    /// File > Send of /nc/NAME; the machine asks with DC1 after 100 ms, unless told otherwise.
    void send(const std::string& name);
    void send_without_start(const std::string& name);
    void binary_send(const std::string& name);
    /// File > Receive into /nc/NAME: armed on return.
    void receive(const std::string& name);
    void binary_receive(const std::string& name);
    /// As `receive`, then the machine sends `bytes`, and the time-out passes.
    void receive_from_machine(const std::string& name, const std::string& bytes);
    void menu(int file_item, const std::string& name);
    /// At a span from now: the operator presses a button.
    void presses(Button& button, Clock_time when);

    [[nodiscard]] std::string file(const std::string& name) const;
    [[nodiscard]] std::string scratch(std::string_view name) const;
    [[nodiscard]] const std::string& log() const { return program_.window.Text1.text(); }
    [[nodiscard]] const std::string& received() const { return desk.machine.received(); }
    [[nodiscard]] Kelvane_lite_form& window() { return program_.window; }
    [[nodiscard]] Shared_state& state() { return program_.window.state; }
    [[nodiscard]] Program& all() { return program_; }
    [[nodiscard]] Scripted_machine& machine() { return desk.machine; }
    [[nodiscard]] Scripted_message_box& boxes() { return desk.boxes; }
    [[nodiscard]] bool idle() const;

    Headless_platform desk;

  private:
    Program program_;
    bool started_ = false;
};

}  // namespace kelvane::testing
