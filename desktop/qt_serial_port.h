#pragma once

#include <QSerialPort>
#include <QTimer>
#include <optional>
#include <string>

#include "desktop/cts_watch.h"
#include "desktop/qt_event_loop.h"
#include "desktop/urgent_thread.h"
#include "desktop/wire_clock.h"
#include "platform/serial_port.h"

namespace kelvane {

struct Line_settings;

/// A serial port of this computer: QSerialPort for what it offers, the kernel's own calls for the
/// rest (the speed that a line really has, the empty transmitter, error counts, lines of the
/// modem). Received bytes are taken without limit, so the buffer size of the settings is only the
/// least that is kept.
///
/// A line that breaks off (adapter pulled out, hang-up) is closed by itself: `lost()` is true from
/// then on, and what had come can still be taken.
class Qt_serial_port : public Serial_comm {
  public:
    /// The loop's sleeps end in time for the port from now on; the loop lives longer.
    explicit Qt_serial_port(Qt_event_loop& loop);
    Qt_serial_port(const Qt_serial_port&) = delete;
    Qt_serial_port& operator=(const Qt_serial_port&) = delete;
    ~Qt_serial_port() override;

    [[nodiscard]] Result<> open(const Port_settings& settings) override;
    void close() override;
    [[nodiscard]] bool is_open() const override { return port_.isOpen(); }
    [[nodiscard]] std::optional<std::string> lost() const override { return lost_; }
    [[nodiscard]] double characters_per_second() const override { return characters_per_second_; }

    [[nodiscard]] Line_errors line_errors() const override;

    [[nodiscard]] std::size_t discarded_nulls() const override { return discarded_nulls_; }
    [[nodiscard]] std::size_t in_buffer_count() override;
    [[nodiscard]] std::string input(std::size_t most) override;
    [[nodiscard]] std::size_t out_buffer_count() override;
    void output(std::string_view bytes) override;
    [[nodiscard]] bool cts_holding() override;

    [[nodiscard]] std::optional<Machine_signals> machine_signals() const override;
    void set_signal(Own_signal signal, bool on) override;

  private:
    void set_frame(const Line_settings& line);
    [[nodiscard]] Failure open_failure(const std::string& device) const;
    /// What no setting of QSerialPort does: handshake characters, receive trigger, old input.
    void prepare_open_line(const std::string& device);
    /// `baud` as the line really has it, `bits` a character with its start and stop bits.
    void start_clock(int baud, int bits);
    void receive();
    /// Keeps what has come, without NULs where they are thrown away.
    void store(std::string_view bytes);
    /// To whoever watches the line.
    void tell(Line_direction direction, std::string_view bytes) const;
    /// True when neither driver nor adapter can have a character left.
    [[nodiscard]] bool at_rest(Clock_time now);
    [[nodiscard]] int handle() const { return static_cast<int>(port_.handle()); }
    /// Closes without losing what was read.
    void shut();
    void lose();
    /// How long the loop may sleep before the port has to be looked at; nothing: any time.
    [[nodiscard]] std::optional<Clock_time> sleep_limit();

    Qt_event_loop& loop_;
    QSerialPort port_;
    QTimer look_again_;
    std::optional<Urgent_thread> urgent_;  ///< while the port is open
    Port_settings settings_;
    Wire_clock wire_;
    Cts_watch cts_;
    Line_errors errors_at_open_;
    Line_errors errors_at_close_;
    std::size_t discarded_nulls_ = 0;
    double characters_per_second_ = 0;
    std::string received_;          ///< and not yet taken
    std::size_t driver_count_ = 0;  ///< as last asked for
    bool waits_for_cts_ = false;    ///< CTS was low when last asked for
    bool waits_for_rest_ = false;   ///< only the adapter kept characters when last asked
    bool at_rest_ = true;           ///< nothing was handed over since the line was last at rest
    std::optional<std::string> lost_;
};

}  // namespace kelvane
