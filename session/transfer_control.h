#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/controls.h"
#include "platform/event_loop.h"
#include "platform/serial_port.h"
#include "platform/task.h"
#include "session/operator.h"
#include "session/transfer_end.h"
#include "session/transfer_state.h"
#include "session/transfer_status.h"

namespace kelvane {

/// What is going on, and what may begin, hold or end it. It alone writes the run-time flags, the
/// transfer's timers, the two buttons and the status bar, and closes the port; everybody may read.
/// Flags are 0 or 1, and are read again after every wait.
class Transfer_control {
  public:
    Transfer_control(Event_loop& loop, Serial_comm& port, Operator& op, Button& Send_button,
                     Button& Stop_button, Label& status_label, State_field& state_field);

    [[nodiscard]] int busy() const { return busy_; }            ///< 1: a transfer is on
    [[nodiscard]] int sending() const { return sending_; }      ///< 1: a send is on
    [[nodiscard]] int receiving() const { return receiving_; }  ///< 1: data has been stored
    [[nodiscard]] int escape() const { return escape_; }        ///< 1: every running loop gives up
    /// 1: the operator has stopped a send; it ends after the current line, unless Send resumes it.
    [[nodiscard]] int IOsend_cancel() const { return IOsend_cancel_; }
    /// 1: output may start or go on (Send button, machine's Xon).
    [[nodiscard]] int Sendit_now() const { return Sendit_now_; }
    [[nodiscard]] int Stopped() const { return Stopped_; }  ///< 1: Stop pressed, it reads "Reset"
    [[nodiscard]] int Xoff() const { return Xoff_; }        ///< 1: output paused

    /// Reserved for a supply of programs from outside, which nothing switches on yet: true ends a
    /// send before its next line.
    bool DNC_alarm = false;
    /// Reserved as well. Not 0: the file is sent again and again; 1 waits for an Xon each time.
    int DNC_cycle = 0;

    [[nodiscard]] Transfer_state state() const { return status_.state(); }

    // --- The course of a transfer

    /// A transfer begins: all flags of the one before are cleared. False, with nothing changed,
    /// while one is on. `path` is its file.
    [[nodiscard]] bool begin(Direction direction, std::string path = {});
    /// What is being received is saved there.
    void goes_to(std::string path) {
        path_ = std::move(path);
        status_.set_path(path_);
    }
    /// What is going on: "PART.NC is being sent, 21 %".
    [[nodiscard]] std::string activity_text() const;
    /// The port that the transfer uses, and the machine, for the status bar.
    void use(const std::string& machine, const std::string& port);
    [[nodiscard]] const std::string& port_name() const { return status_.port(); }
    /// The machine's times, in milliseconds; a delay of 0 or less is none.
    struct Times {
        int silence = 0;            ///< ends a receive
        int character_delay = 0;    ///< after every character sent
        int block_delay = 0;        ///< after every block sent
        int exclamation_delay = 0;  ///< pause of a "!" line
    };
    void set_times(const Times& times);
    /// A send is on from here: both buttons are live until it ends.
    void begin_sending();
    /// A receive waits or is about to begin: Stop is live, whatever was disabled before.
    void enable_stop();
    /// The receive has been prepared; bytes count from here.
    void wait_for_data();
    /// The state moves on. False, with nothing changed, where the state does not allow the event.
    bool happens(Transfer_event event);
    /// How much there is to send: bytes, and the lines that the program has; with `first_line`,
    /// from 1, only those from there on are sent.
    void expect(std::uint64_t bytes, std::size_t lines, std::size_t first_line = 0) {
        status_.expect(bytes, lines, first_line);
    }
    /// How many lines the text has that a receive is about to save.
    void count_received_lines(std::size_t lines) { status_.expect(0, lines, 0); }
    /// A line of the program, from 1, leaves now.
    void at_line(std::size_t line, std::string text) { status_.at_line(line, std::move(text)); }
    /// Bytes of the program that have left.
    void count_program(std::uint64_t bytes) { status_.count_program(bytes); }
    /// Bytes that have been sent in all, or received.
    void count_bytes(std::size_t bytes) { status_.add_bytes(bytes); }
    /// What the timers of a receive run, from `listen` to `end_listening`.
    struct Listener {
        std::function<void()> poll;    ///< Timer5: what has come in is to be taken
        std::function<void()> silent;  ///< Timer6: nothing has come for the machine's time-out
        std::function<void()> answer;  ///< Timer8: nothing has followed a lone DC2
    };
    void listen(Listener listener);
    void end_listening();
    /// The poll: first 50 ms from now, or not any more.
    void set_polling(bool on) { Timer5.set_enabled(on); }
    [[nodiscard]] bool polling() const { return Timer5.enabled(); }
    /// The machine has sent a DC2 and nothing else so far: it is answered in a second unless data
    /// comes first.
    void await_data_behind_dc2() { Timer8.set_enabled(true); }
    /// Data of a receive has been stored, `bytes` more. With `silence_ends` the time-out counts
    /// from here.
    void data_stored(std::size_t bytes, bool silence_ends);
    /// The line is silent: the receive timers stop, the buttons die and the port is closed.
    void line_silent();
    /// A received byte: DC3 sets `Xoff`, DC1 clears it, in any parity. True for a DC1.
    bool machine_says(char byte);
    /// The machine has asked for the program.
    void machine_starts() { Sendit_now_ = 1; }
    /// A new program owes nothing to an Xoff before it; a new pass of the same one may.
    void set_hold(bool held) { Xoff_ = held ? 1 : 0; }

    /// The one end of every transfer: port closed, timers and flags at rest, buttons, log, status
    /// and beep as the outcome asks; then the box, if any.
    Task<> end(Transfer_end end);
    /// Called when a transfer has ended and the port is closed, before its box: fills in the time
    /// and keeps the record.
    std::function<void(Transfer_record&)> on_ended;
    /// Called with true when a transfer begins, and with false when none is on any more, whatever
    /// has ended it; the latter also without one.
    std::function<void(bool)> on_running = [](bool) {};
    /// Called with "PART.NC to Mill 2" when a transfer begins, and with an empty text at its end.
    void on_title(std::function<void(const std::string&)> told) {
        status_.on_title = std::move(told);
    }
    /// Of the transfer that is on, or the last one.
    [[nodiscard]] Direction direction() const { return direction_; }
    /// Of the last transfer.
    [[nodiscard]] Outcome outcome() const { return outcome_; }
    /// Of the last transfer, see `Transfer_end`.
    [[nodiscard]] std::optional<std::size_t> last_line() const { return last_line_; }

    /// Puts the port, the timers and the flags to rest when the task of a transfer is destroyed in
    /// its course.
    class Running {
      public:
        explicit Running(Transfer_control& control) : control_(control) {}
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        ~Running();

      private:
        Transfer_control& control_;
    };

    // --- The operator

    void press_send();
    /// The first press pauses, or ends after the current line; the second aborts.
    void press_stop();
    void Enable_buttons();
    void Disable_buttons();
    /// Another command: what runs is told to end.
    void give_up();
    /// From the moment the window is being closed nothing new may be started.
    void begin_closing();
    [[nodiscard]] bool closing() const { return closing_; }

    // --- Waits

    /// At least `count` milliseconds; not at all for 0 or less.
    Task<> Delay(int count);
    // The delays of `Times`, which end early on `escape`.
    Task<> character_delay() { return wait_for(Timer9); }
    Task<> block_delay() { return wait_for(Timer12); }
    Task<> exclamation_delay() { return wait_for(exclamation_timer); }

    // --- Work other than a transfer: a listing, a resequencing

    /// Lives as long as such work.
    class Work {
      public:
        explicit Work(Transfer_control& control) : control_(control) { ++control_.work_; }
        Work(const Work&) = delete;
        Work& operator=(const Work&) = delete;
        ~Work() { --control_.work_; }

      private:
        Transfer_control& control_;
    };
    /// False while a transfer or other work is going on, and when the window is being closed.
    [[nodiscard]] bool may_start_work() const;
    /// Work begins that Stop ends: `escape`, `IOsend_cancel` and `Stopped` become 0, Stop is live.
    void begin_stoppable_work();
    /// Such work has ended, whatever ended it: Stop is dead and reads "Stop"; no hold is left.
    void end_stoppable_work();
    /// The operator has pressed Stop, picked another command, or is closing the window.
    [[nodiscard]] bool stop_asked() const { return escape_ != 0 || IOsend_cancel_ != 0; }

    // --- The status bar

    /// What is told of a long wait for data.
    void set_advice(std::string_view advice) { status_.set_advice(advice); }
    /// The machine that is selected.
    void show_machine(const std::string& machine) { status_.set_machine(machine); }
    /// Its port and settings in short.
    void set_summary(const std::string& summary) { status_.set_summary(summary); }
    /// Beside the idle machine, until the next transfer begins.
    void set_note(const std::string& note) { status_.set_note(note); }
    /// Behind the note that is there, and in the state field below the last transfer's result.
    void add_note(const std::string& note) { status_.add_note(note); }
    /// Beside the idle machine, whatever transfers follow.
    void set_warning(const std::string& warning) { status_.set_warning(warning); }
    /// What the operator should know before the transfer that waits goes on; sentences with line
    /// feeds between them.
    void set_caution(const std::string& caution) { status_.set_caution(caution); }
    /// The answer to what the operator has just done; before all else until the next transfer.
    void set_hint(const std::string& hint) { status_.set_hint(hint); }

  private:
    Task<> wait_for(Timer& timer);
    void clear_flags();
    void rest();
    [[nodiscard]] std::string result_of(Outcome outcome, const std::string& remarks);
    void reset_stop();
    [[nodiscard]] std::string line_remark(const Transfer_end& end) const;
    [[nodiscard]] bool beeps_at(const Transfer_end& end) const;

    Timer Timer5;             ///< 50 ms: receive poll, from the first byte that waits
    Timer Timer6;             ///< the machine's time-out: end of a receive
    Timer Timer8;             ///< 1000 ms: answer to a lone DC2
    Timer Timer9;             ///< character delay of the sender
    Timer Timer12;            ///< block delay of the sender
    Timer Timer17;            ///< `Delay`
    Timer exclamation_timer;  ///< pause of a "!" line

    Event_loop& loop_;
    Serial_comm& port_;
    Operator& op_;
    Button& send_;
    Button& stop_;
    Transfer_status status_;
    Direction direction_ = Direction::send;
    std::string path_;
    Outcome outcome_ = Outcome::done;
    std::optional<std::size_t> last_line_;
    int busy_ = 0;
    int sending_ = 0;
    int receiving_ = 0;
    int escape_ = 0;
    int IOsend_cancel_ = 0;
    int Sendit_now_ = 0;
    int Stopped_ = 0;
    int Xoff_ = 0;
    int work_ = 0;
    bool closing_ = false;
};

}  // namespace kelvane
