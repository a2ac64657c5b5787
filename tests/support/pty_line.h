#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace kelvane::testing {

/// A serial line without hardware: the program opens `device()`, the test is the machine at the
/// other end. A pseudo-terminal carries bytes as fast as both ends take them, has no modem lines,
/// and always says that its output queue is empty.
class Pty_line {
  public:
    /// Throws when the system has no pseudo-terminal left.
    Pty_line();
    Pty_line(const Pty_line&) = delete;
    Pty_line& operator=(const Pty_line&) = delete;
    ~Pty_line() { hang_up(); }

    [[nodiscard]] const std::string& device() const { return device_; }
    /// Waits for the partner to take all of it, but gives up after `patience` without progress.
    bool send(std::string_view bytes,
              std::chrono::milliseconds patience = std::chrono::seconds(20));
    /// What arrives until `count` bytes are there or nothing has come for `patience`.
    std::string receive(std::size_t count, std::chrono::milliseconds patience);
    /// The adapter is pulled out.
    void hang_up();

  private:
    [[nodiscard]] bool wait_for(short events, std::chrono::milliseconds patience) const;

    int machine_ = -1;
    std::string device_;
};

}  // namespace kelvane::testing
