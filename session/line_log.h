#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "platform/event_loop.h"
#include "platform/serial_port.h"

namespace kelvane {

/// The last 256 kB that have crossed the line, both ways, with times. Fed by the port's
/// `on_crossing`.
class Line_log {
  public:
    static constexpr std::size_t capacity = 256UL * 1024;

    /// Bytes that went one way with no pause between them.
    struct Stretch {
        Clock_time begin{};
        Line_direction direction = Line_direction::to_machine;
        std::string bytes;
    };

    /// Adds bytes that cross now. They lengthen the last stretch when they go its way, close behind
    /// it and at most a few hundred bytes from its begin, so that a time stands at them.
    void add(Clock_time now, Line_direction direction, std::string_view bytes);
    /// Empties it; `position_of_first` goes on.
    void clear();
    /// In the order of time; what is older than the last 256 kB has gone, a stretch at a time.
    [[nodiscard]] const std::deque<Stretch>& stretches() const { return stretches_; }
    /// How many stretches have gone since the log was made. Only the last one ever grows, so what
    /// has been shown needs no second look.
    [[nodiscard]] std::uint64_t position_of_first() const { return gone_; }

  private:
    void drop_first();

    std::deque<Stretch> stretches_;
    std::size_t size_ = 0;
    std::uint64_t gone_ = 0;
    Clock_time last_{};
};

/// `seven_bits`: characters without their bit 7, which is the parity of some tape codes.
enum class Line_form { characters, seven_bits, hex };

/// Bytes to be read by people. Characters: what can be printed as it is, control codes by name,
/// equal ones counted, all else as the settings write it: "N1<CR><LF>", "<NUL> x 40", "<147>"; a
/// new line after each <LF>, each <CR> beside none, and before a line becomes too long. Hex: "4E 31
/// 0D", 16 bytes a line.
[[nodiscard]] std::string readable_bytes(std::string_view bytes, Line_form form);

/// A stretch as lines with a line feed between them: seconds since `start`, ">" to or "<" from the
/// machine, and what crossed. The time stands at the first line, the sign at each.
[[nodiscard]] std::string stretch_text(const Line_log::Stretch& stretch, Clock_time start,
                                       Line_form form);

/// The log as the lines of a text file.
[[nodiscard]] std::string log_text(const Line_log& log, Clock_time start, Line_form form);

}  // namespace kelvane
