#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

#include "simulated_machine/outcome.h"
#include "simulated_machine/pseudo_terminal.h"

namespace kelvane::simulated {

/// A byte that has come over the line, and when its stop bit ended.
struct Arrival {
    std::uint8_t byte = 0;
    Time at;
};

/// What the line is like and when it ends.
struct Line_settings {
    long baud = 9600;
    int stop_bits = 1;
    bool unpaced_sending = false;   ///< bytes go out as fast as the terminal takes them
    std::size_t hang_up_after = 0;  ///< bytes of both directions; 0: never
    bool attentive = false;         ///< never sleeps, for a whole processor
    Time deadline = never;          ///< of the whole run
};

/// The wire between the pseudo-terminal and the machine. Bytes pass at the pace of the line, each
/// at its own moment of an absolute schedule: one may be late by what the processor sleeps too
/// long, but none is early. What the partner has handed over too soon waits in the terminal, as in
/// a driver's queue.
class Line {
  public:
    Line(Pseudo_terminal& terminal, const Line_settings& settings);

    /// One character with its start, stop and eight data bits.
    [[nodiscard]] Duration character_time() const { return character_time_; }

    /// Whether the partner has the line open, and how often it has opened it so far.
    [[nodiscard]] bool partner_present() const { return present_; }
    [[nodiscard]] int sessions() const { return sessions_; }

    /// Sleeps until the time, or until something may have happened on the line; then moves bytes. A
    /// value when everything has to end: signal, deadline, hang-up or the interruption.
    [[nodiscard]] std::optional<Outcome> wait(Time until);

    /// The next byte that has arrived; take() removes it too.
    [[nodiscard]] std::optional<Arrival> peek() const;
    std::optional<Arrival> take();

    /// Whether bytes are on their way to the machine, or have arrived and were not taken. An absent
    /// partner may have left some: a machine that overslept has not yet looked for them.
    [[nodiscard]] bool incoming() const { return !arrivals_.empty() || terminal_.readable(); }

    /// How many bytes may arrive before wait() has to return; at least 1, which is the default.
    void look_after(std::size_t bytes) { look_after_ = bytes; }

    /// Puts a byte behind those that still wait to go out.
    void send(std::uint8_t byte);

    /// Bytes not yet handed over to the partner.
    [[nodiscard]] std::size_t unsent() const { return departures_.size(); }

    /// Takes back the bytes that are not yet out; how many they were.
    std::size_t withdraw();

    /// When the last byte was handed over.
    [[nodiscard]] Time last_sent() const { return last_sent_; }

    /// The most that a sleep has lasted too long: how far the figures of a run can be trusted.
    [[nodiscard]] Duration late() const { return late_; }

    /// A second descriptor that ends a sleep, and the question asked afterwards whether the
    /// operator wants the job stopped.
    void watch(int descriptor, std::function<bool()> interruption);

  private:
    [[nodiscard]] Time next_event() const;
    [[nodiscard]] bool cut() const;
    [[nodiscard]] bool room() const;
    void sleep_until(Time until);
    void look_for_partner(bool present);
    void take_from_terminal();
    void release_due();
    [[nodiscard]] std::optional<Outcome> end_reason();

    Pseudo_terminal& terminal_;
    Line_settings settings_;
    Duration character_time_;
    std::deque<Arrival> arrivals_;
    Time arrivals_free_{};  ///< when the line towards the machine is free
    std::deque<Arrival> departures_;
    Time departures_free_{};
    Time last_sent_{};
    Duration late_{};
    std::size_t look_after_ = 1;
    std::size_t passed_ = 0;
    bool present_ = false;
    bool blocked_ = false;  ///< the terminal takes no more for the moment
    int sessions_ = 0;
    int watched_ = -1;
    std::function<bool()> interruption_;
};

/// Set by signals: end the run; orders of the interactive mode. Waiting on a line ends when one
/// comes.
extern std::atomic<bool> end_requested;
extern std::atomic<bool> punch_requested;
extern std::atomic<bool> read_requested;

/// Puts this process before others when the system permits it, so that a busy computer does not
/// make the emulated line slow.
void run_punctually();

/// Routes SIGTERM and SIGINT, and when asked SIGUSR1 and SIGUSR2, to the flags above. They are
/// delivered only while a line waits.
void catch_signals(bool with_orders);

}  // namespace kelvane::simulated
