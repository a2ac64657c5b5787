#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/serial_port.h"
#include "support/virtual_loop.h"

namespace kelvane::testing {

/// A serial port with a machine at its other end, both in virtual time. Bytes leave one by one at
/// the line's bit time, the machine logs each with the time at which it is complete, and answers as
/// the test has scripted.
class Scripted_machine : public Serial_comm {
  public:
    explicit Scripted_machine(Virtual_loop& loop) : loop_(loop) {}

    // --- The port, as the program sees it
    [[nodiscard]] Port_error open(const Port_settings& settings) override;
    void close() override;
    [[nodiscard]] bool is_open() const override { return open_; }
    [[nodiscard]] bool lost() const override { return lost_; }
    [[nodiscard]] std::string error_text() const override { return error_text_; }
    [[nodiscard]] std::string device_of(int com_port) const override;
    [[nodiscard]] double characters_per_second() const override;
    [[nodiscard]] std::size_t in_buffer_count() override { return to_program_.size(); }
    [[nodiscard]] std::string input(std::size_t most) override;
    [[nodiscard]] std::size_t out_buffer_count() override { return on_line_.size(); }
    void output(std::string_view bytes) override;
    [[nodiscard]] bool cts_holding() override { return cts_; }

    // --- The script
    /// What happens at a moment: the machine sends, or something runs.
    class Moment {
      public:
        explicit Moment(std::function<void(std::function<void()>)> when) : when_(std::move(when)) {}
        void runs(std::function<void()> action) const { when_(std::move(action)); }

      private:
        std::function<void(std::function<void()>)> when_;
    };
    /// As soon as `count` bytes in all have arrived.
    Moment after_bytes(std::size_t count);
    /// A span from now.
    Moment after(Clock_time span);
    /// Bytes that begin to come in now, at the line's pace.
    void sends(std::string bytes);
    void set_cts(bool raised) { cts_ = raised; }
    /// The adapter is pulled out.
    void hang_up();
    void refuse(Port_error error, std::string text);

    // --- The record
    [[nodiscard]] const std::string& received() const { return received_; }
    [[nodiscard]] const std::vector<Clock_time>& times() const { return times_; }
    [[nodiscard]] const Port_settings& settings() const { return settings_; }
    [[nodiscard]] int times_opened() const { return times_opened_; }
    [[nodiscard]] std::size_t most_queued() const { return most_queued_; }
    void forget_received() { received_.clear(), times_.clear(); }

  private:
    [[nodiscard]] Clock_time character_time() const;
    void shift_next();
    void arrive(char byte);

    Virtual_loop& loop_;
    Port_settings settings_;
    bool open_ = false;
    bool lost_ = false;
    bool cts_ = true;
    unsigned line_ = 0;  // counts openings, so that bytes of an old one go nowhere
    int times_opened_ = 0;
    Port_error refusal_ = Port_error::none;
    std::string error_text_;
    std::string to_program_;
    Clock_time input_free_{};
    std::string on_line_;
    std::size_t most_queued_ = 0;
    std::string received_;
    std::vector<Clock_time> times_;
    std::vector<std::pair<std::size_t, std::function<void()>>> triggers_;
};

}  // namespace kelvane::testing
