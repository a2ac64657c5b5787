#pragma once

#include <array>
#include <atomic>

namespace kelvane::testing {

/// What a serial driver and its adapter would say and do, for one pseudo-terminal that has neither.
/// Shared between a test and the program into which the library of this folder is preloaded, in a
/// file that both map and the environment variable KELVANE_MODEM_LINES names; or set by
/// `emulate()` in a test that is linked with it.
struct Modem_lines {
    std::array<char, 64> device{};  ///< path of the device, ended by NUL
    std::atomic<bool> cts{true};
    std::atomic<int> other_signals{0};  ///< bits TIOCM_DSR, TIOCM_CAR and TIOCM_RNG
    std::atomic<int> queued{0};         ///< bytes that the driver says are still to be sent
    /// Last set by the program: bits TIOCM_RTS and TIOCM_DTR.
    std::atomic<int> set_by_program{0};
    std::atomic<int> cts_looks{0};  ///< how often the program has asked

    /// What the driver counts; not answered unless `counts`.
    std::atomic<bool> counts{false};
    std::atomic<int> cts_changes{0}, framing{0}, parity{0}, overrun{0}, breaks{0};

    /// Baud rate that the adapter has instead of the one it is set to; 0 for the same.
    std::atomic<int> real_speed{0};

    /// The speed and the frame last set by the program, with its NUL: "9600 8E2".
    std::array<char, 16> frame{};

    /// The adapter's transmitter keeps characters, of 10 bits, that `queued` does not show.
    struct Transmitter {
        std::atomic<bool> there{false};
        double clock_error = 0;  ///< 0.005: every character takes 0.5 % longer
        int delay_us = 0;        ///< before the first character after a rest
        bool tells_empty = false;
        std::atomic<int> most_kept{0};  ///< characters that would have followed an Xoff
    };
    Transmitter transmitter;

    /// Characters that have left one after the other under the same settings.
    struct Departure {
        int speed = 0;
        bool dtr = false;
        int characters = 0;
        friend bool operator==(const Departure&, const Departure&) = default;
    };
    std::array<Departure, 8> departures{};
    std::atomic<int> departure_count{0};
};

/// For the process in which it is called; null ends it.
void emulate(Modem_lines* lines);

}  // namespace kelvane::testing
