#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/event_loop.h"
#include "session/transfer_state.h"

namespace kelvane {

/// The status bar: machine and port, what is done and why it waits, bytes and time gone. It
/// repaints at once when the state changes, else four times a second.
class Transfer_status {
  public:
    Transfer_status(Event_loop& loop, Label& label);

    /// The machine that is named while nothing goes on.
    void set_machine(std::string machine);
    /// A transfer begins: bytes and clock start at 0. It keeps the name of its machine to its end,
    /// whichever is selected meanwhile.
    void begin(std::string machine, std::string port);
    /// The port of the transfer, as `begin` was told.
    [[nodiscard]] const std::string& port() const { return port_; }
    void set(Transfer_state state);
    [[nodiscard]] Transfer_state state() const { return state_; }
    void add_bytes(std::size_t bytes) { bytes_ += static_cast<std::int64_t>(bytes); }
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }
    void restart_count() { bytes_ = 0; }
    /// Back to idle. `note` stays until the next transfer ("Received bytes are kept in ...").
    void end(std::string note);
    /// Shows `note` beside the idle machine.
    void set_note(std::string note);
    /// Shows `warning` beside the idle machine from now on, whatever transfers follow.
    void set_warning(std::string warning);

  private:
    void show();
    [[nodiscard]] std::string idle_text() const;
    [[nodiscard]] std::string busy_text() const;

    Event_loop& loop_;
    Label& label_;
    Timer timer_;
    std::string machine_;
    std::string machine_of_transfer_;
    std::string port_;
    std::string note_;
    std::string warning_;
    Transfer_state state_ = Transfer_state::idle;
    std::int64_t bytes_ = 0;
    Clock_time started_{};
};

}  // namespace kelvane
