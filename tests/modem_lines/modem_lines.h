#pragma once

#include <array>
#include <atomic>

namespace kelvane::testing {

/// Modem lines and output queue of one device that has none, shared between a test and a program
/// into which the library of this folder is preloaded. Lives in a file that both map; the
/// environment variable KELVANE_MODEM_LINES names it.
struct Modem_lines {
    std::array<char, 64> device{};  ///< path of the device, ended by NUL
    std::atomic<bool> cts{true};
    std::atomic<int> queued{0};  ///< bytes that the driver says are still to be sent
    /// Last set by the program: bits TIOCM_RTS and TIOCM_DTR.
    std::atomic<int> set_by_program{0};
    std::atomic<int> cts_looks{0};  ///< how often the program has asked
};

}  // namespace kelvane::testing
