#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/event_loop.h"

namespace kelvane {

/// What the program is doing, in the words of the status bar.
enum class Activity {
    idle,
    preparing,
    waiting_for_start,
    sending,
    held_by_xoff,
    held_by_cts,
    paused,
    draining,
    waiting_for_data,
    receiving,
    converting,
    saving,
};

/// The status bar: machine and port, what is done and why it waits, bytes and time gone. It
/// repaints at once when the activity changes, else four times a second.
class Transfer_status {
  public:
    Transfer_status(Event_loop& loop, Label& label);

    /// The machine that is named while nothing goes on.
    void set_machine(std::string machine);
    /// A transfer begins: bytes and clock start at 0.
    void begin(std::string_view port);
    /// The port of the transfer, as `begin` was told.
    [[nodiscard]] const std::string& port() const { return port_; }
    void set(Activity activity);
    [[nodiscard]] Activity activity() const { return activity_; }
    void set_bytes(std::int64_t bytes) { bytes_ = bytes; }
    void add_bytes(std::size_t bytes) { bytes_ += static_cast<std::int64_t>(bytes); }
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }
    /// Back to idle. `note` stays until the next transfer ("Received bytes are kept in ...").
    void end(std::string note = {});
    /// Shows `note` beside the idle machine.
    void set_note(std::string note);

  private:
    void show();
    [[nodiscard]] std::string idle_text() const;
    [[nodiscard]] std::string busy_text() const;

    Event_loop& loop_;
    Label& label_;
    Timer timer_;
    std::string machine_;
    std::string port_;
    std::string note_;
    Activity activity_ = Activity::idle;
    std::int64_t bytes_ = 0;
    Clock_time started_{};
};

}  // namespace kelvane
