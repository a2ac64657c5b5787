#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/handshake.h"
#include "platform/result.h"

namespace kelvane {

/// All that is set before a port is opened.
struct Port_settings {
    std::string device;    ///< "/dev/ttyUSB0"
    std::string settings;  ///< baud, parity letter, data bits, stop bits: "9600,N,8,1"
    Handshake handshake = Handshake::none;  ///< of the driver; for receiving only
    bool null_discard = false;              ///< NUL bytes that arrive are thrown away
    /// Every byte that arrives is data, DC1 and DC3 too: the driver may hold the machine back, but
    /// takes nothing that the machine sends as a handshake.
    bool transparent = false;
    std::size_t in_buffer_size = 4096;
    char xon = '\x11';  ///< what the driver sends and obeys under Xon/Xoff
    char xoff = '\x13';
};

/// Characters that came in damaged, or were lost.
struct Line_errors {
    int framing = 0;  ///< without their stop bit
    int parity = 0;
    int overrun = 0;  ///< lost because the computer did not fetch them in time
    int breaks = 0;   ///< times that the line was held low for longer than a character

    friend bool operator==(const Line_errors&, const Line_errors&) = default;
};

/// The lines of the plug that the machine drives, beside its data.
struct Machine_signals {
    bool cts = false;
    bool dsr = false;
    bool dcd = false;
    bool ri = false;

    friend bool operator==(const Machine_signals&, const Machine_signals&) = default;
};

/// Those that the computer drives.
enum class Own_signal : char { dtr, rts };

enum class Line_direction : char { to_machine, from_machine };

/// The serial port `Serial_comm1`. All reading is polled.
class Serial_comm {
  public:
    Serial_comm() = default;
    Serial_comm(const Serial_comm&) = delete;
    Serial_comm& operator=(const Serial_comm&) = delete;
    virtual ~Serial_comm() = default;

    /// Opens the port with RTS and DTR on and old input thrown away. On failure the port is closed;
    /// the reason tells a device that is missing, in use, forbidden or of another speed apart, and
    /// says what may help.
    [[nodiscard]] virtual Result<> open(const Port_settings& settings) = 0;
    /// Throws away output that is still queued, then closes; never waits. RTS and DTR go off first.
    virtual void close() = 0;
    [[nodiscard]] virtual bool is_open() const = 0;
    /// How an open port has gone (adapter pulled out, line hung up), in words for the operator; no
    /// value while none has. It is closed then, what had been read from it before stays readable.
    /// Cleared by `open`.
    [[nodiscard]] virtual std::optional<std::string> lost() const = 0;
    /// Characters a second that the open line can carry: baud rate over bits of a character.
    [[nodiscard]] virtual double characters_per_second() const = 0;

    /// What has gone wrong on the line since `open`; after `close`, up to that. All 0 on a device
    /// that counts no errors.
    [[nodiscard]] virtual Line_errors line_errors() const = 0;
    /// Sees all that crosses the line: what comes in as the driver hands it over, before any is
    /// thrown away, what goes out as it is handed over. Must not call the port.
    std::function<void(Line_direction, std::string_view)> on_crossing;

    /// NULs that have come in since `open` and have been thrown away.
    [[nodiscard]] virtual std::size_t discarded_nulls() const = 0;
    /// Bytes that wait to be read.
    [[nodiscard]] virtual std::size_t in_buffer_count() = 0;
    /// Takes at most `most` waiting bytes; 0 takes all.
    [[nodiscard]] virtual std::string input(std::size_t most) = 0;
    /// Bytes handed over that have not left the line yet, as far as can be known, but never fewer.
    /// 0 only when the last of them has left the adapter too.
    [[nodiscard]] virtual std::size_t out_buffer_count() = 0;
    virtual void output(std::string_view bytes) = 0;
    /// CTS raised; a device without modem lines counts as clear to send.
    [[nodiscard]] virtual bool cts_holding() = 0;

    /// As they are now; on some adapters a look costs a millisecond. No value while the port is
    /// closed and on a device that does not know.
    [[nodiscard]] virtual std::optional<Machine_signals> machine_signals() const = 0;
    /// Nothing happens on a closed port and on a device without such lines.
    virtual void set_signal(Own_signal signal, bool on) = 0;
};

}  // namespace kelvane
