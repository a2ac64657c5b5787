#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/event_loop.h"
#include "session/transfer_record.h"
#include "session/transfer_state.h"

namespace kelvane {

/// The status bar and the state field: machine and port, what is done and why it waits, how far it
/// is, time gone and left; when the machine has been silent for long, what to look at; and what the
/// last transfer has come to. It repaints at once when the state changes, else four times a second.
class Transfer_status {
  public:
    Transfer_status(Event_loop& loop, Label& label, State_field& field);

    /// Called when a transfer begins, with its name, "PART.NC to Mill 2", and with an empty text
    /// when it has ended.
    std::function<void(const std::string& title)> on_title;

    /// The machine that is named while nothing goes on.
    void set_machine(std::string machine);
    /// Port and settings of that machine: "COM3 (/dev/ttyUSB0) - 9600".
    void set_summary(std::string summary);
    /// Nothing is known yet of the transfer that begins but its file and direction.
    void begin_record(Direction direction, std::string path);
    /// What is being received is saved there.
    void set_path(const std::string& path) { record_.path = path; }
    /// A transfer begins, its state is set next: bytes and clock start at 0. It keeps the name of
    /// its machine to its end, whichever is selected meanwhile.
    void begin(std::string machine, std::string port);
    /// The port of the transfer, as `begin` was told.
    [[nodiscard]] const std::string& port() const { return port_; }
    /// The transfer is in that state from now on.
    void set(Transfer_state state);
    [[nodiscard]] Transfer_state state() const { return state_; }
    /// Bytes of the program to be sent and lines that it has; `first_line`, from 1, of a part that
    /// is sent to its end, 0 of a whole program.
    void expect(std::uint64_t bytes, std::size_t lines, std::size_t first_line);
    /// A line, from 1, and its text: the last that has begun to leave.
    void at_line(std::size_t line, std::string text);
    /// Bytes of the program, from its start, that have been handed to the line.
    void count_program(std::uint64_t bytes) { record_.sent = bytes; }
    /// So many more bytes have crossed the line; the first ones start the clock.
    void add_bytes(std::size_t bytes);
    /// What has crossed so far (select codes) does not count; the clock waits again.
    void restart_count();
    /// That have crossed the line.
    [[nodiscard]] std::int64_t bytes() const { return record_.bytes; }
    /// What is known of the transfer: all but its end.
    [[nodiscard]] Transfer_record record() const;
    /// Said while the transfer waits for its start.
    void set_caution(std::string caution);
    /// In place of the advice that a long wait brings, as long as this state lasts.
    void set_advice(std::string_view advice) { advice_ = advice; }
    /// What the transfer has come to, for the state field.
    void set_result(const Transfer_record& record);
    /// The transfer has ended, its state is idle again. `note` stays until the next transfer
    /// ("Received bytes are kept in ...").
    void end(std::string note);
    /// Shows `hint`, the answer to what has just been done, before all else until the next transfer
    /// begins.
    void set_hint(std::string hint);
    /// Shows `note` beside the idle machine.
    void set_note(std::string note);
    /// The same behind the note that is there, and in the state field below the last result.
    void add_note(const std::string& note);
    /// What a transfer leaves to say. The remarks, sentences with line feeds between them, stand in
    /// the state field with its result.
    void add_end(const std::string& note, const std::string& remarks);
    /// Shows `warning` beside the idle machine from now on, whatever transfers follow.
    void set_warning(std::string warning);

  private:
    void show();
    [[nodiscard]] std::string idle_text() const;
    [[nodiscard]] std::string busy_text() const;
    [[nodiscard]] std::string times_text() const;
    [[nodiscard]] std::string title() const;
    [[nodiscard]] std::string advice_now() const;
    [[nodiscard]] State_field::View busy_view() const;

    Event_loop& loop_;
    Label& label_;
    State_field& field_;
    State_field::View result_;  ///< of the last transfer
    Timer timer_;
    std::string machine_;
    std::string summary_;
    std::string port_;
    std::string note_;
    std::string warning_;
    std::string hint_;
    std::string caution_;
    std::string advice_;
    Transfer_state state_ = Transfer_state::idle;
    Transfer_record record_;
    Clock_time since_{};      ///< when the state was entered
    Clock_time started_{};    ///< the first byte
    Clock_time last_{};       ///< the last one
    Clock_time paused_{};     ///< by the operator, since the first byte
    Clock_time line_time_{};  ///< from the first byte to the last one, without those pauses
};

}  // namespace kelvane
