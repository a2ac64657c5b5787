#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/basic_text.h"
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
    Result<> open(const Port_settings& settings) override {
        lost_.reset();
        settings_ = settings;
        ++times_opened_;
        if (refusal_ || Val(settings.settings) <= 0) {
            return Failure{refusal_.value_or("no setting of a line")};
        }
        close();
        open_ = true;
        dtr = true;
        rts = true;
        to_program_.clear();
        discarded_nulls_ = 0;
        return {};
    }
    void close() override {
        open_ = false;
        dtr = false;
        rts = false;
        ++line_;
        on_line_.clear();
    }
    bool is_open() const override { return open_; }
    std::optional<std::string> lost() const override { return lost_; }
    double characters_per_second() const override {
        return Val(settings_.settings) / (settings_.settings.ends_with(",1") ? 10 : 11);
    }
    Line_errors line_errors() const override { return errors; }
    std::size_t discarded_nulls() const override { return discarded_nulls_; }
    std::size_t in_buffer_count() override { return to_program_.size(); }
    std::string input(std::size_t most) override {
        std::string taken = to_program_.substr(0, most == 0 ? std::string::npos : most);
        to_program_.erase(0, taken.size());
        return taken;
    }
    std::size_t out_buffer_count() override { return on_line_.size(); }
    void output(std::string_view bytes) override {
        const bool idle = on_line_.empty();
        tell(Line_direction::to_machine, bytes);
        on_line_ += open_ ? bytes : "";
        most_queued_ = std::max(most_queued_, on_line_.size());
        if (idle && !on_line_.empty()) {
            shift_next();
        }
    }
    bool cts_holding() override { return cts; }
    std::optional<Machine_signals> machine_signals() const override {
        return open_ ? from_machine : std::nullopt;
    }
    void set_signal(Own_signal signal, bool on) override {
        (signal == Own_signal::dtr ? dtr : rts) = on;
    }

    // --- The script
    /// Something runs as soon as `count` bytes in all have arrived.
    void after_bytes(std::size_t count, std::function<void()> action) {
        triggers_.emplace(count, std::move(action));
    }
    /// Something runs a span from now.
    void after(Clock_time span, std::function<void()> action) {
        loop_.after(span, std::move(action));
    }
    /// Bytes that begin to come in now, at the line's pace.
    void sends(const std::string& bytes) {
        input_free_ = std::max(input_free_, loop_.now());
        for (const char byte : bytes) {
            input_free_ += open_ ? character_time() : Clock_time(1);
            loop_.at(input_free_, [this, byte] { arrive({&byte, 1}); });
        }
    }
    /// The adapter is pulled out.
    void hang_up() {
        close();
        lost_ = settings_.device + " has gone";
    }
    /// No value: it can be opened.
    void refuse(std::optional<std::string> reason) { refusal_ = std::move(reason); }
    bool cts = true;
    Line_errors errors;
    std::optional<Machine_signals> from_machine;  ///< none: a device that does not know
    bool loops_back = false;                      ///< a plug that joins pins 2 and 3

    // --- The record
    bool dtr = false;  ///< as last set by the program
    bool rts = false;
    /// Gives the memory back, too.
    void forget() {
        received_ = std::string();
        times_ = std::vector<Clock_time>();
    }
    [[nodiscard]] const std::string& received() const { return received_; }
    [[nodiscard]] const std::vector<Clock_time>& times() const { return times_; }
    [[nodiscard]] const Port_settings& settings() const { return settings_; }
    [[nodiscard]] int times_opened() const { return times_opened_; }
    [[nodiscard]] std::size_t most_queued() const { return most_queued_; }

  private:
    [[nodiscard]] Clock_time character_time() const {
        return Clock_time(std::llround(1e6 / characters_per_second()));
    }
    /// One byte, or none.
    void arrive(std::string_view byte) {
        tell(Line_direction::from_machine, byte);
        const bool thrown_away = settings_.null_discard && byte == std::string_view("\0", 1);
        to_program_ += open_ && !thrown_away ? byte : "";
        discarded_nulls_ += open_ && thrown_away ? 1 : 0;
    }
    void tell(Line_direction direction, std::string_view bytes) const {
        if (open_ && on_crossing && !bytes.empty()) {
            on_crossing(direction, bytes);
        }
    }
    void shift_next() {
        loop_.after(character_time(), [this, line = line_] {
            if (line != line_) {
                return;
            }
            received_ += on_line_.front();
            arrive(loops_back ? on_line_.substr(0, 1) : "");
            on_line_.erase(0, 1);
            if (!on_line_.empty()) {
                shift_next();
            }
            times_.push_back(loop_.now());
            while (auto trigger = triggers_.extract(received_.size())) {
                trigger.mapped()();
            }
        });
    }

    Virtual_loop& loop_;
    Port_settings settings_;
    bool open_ = false;
    std::optional<std::string> lost_;
    unsigned line_ = 0;  // counts openings, so that bytes of an old one go nowhere
    std::size_t discarded_nulls_ = 0;
    int times_opened_ = 0;
    std::optional<std::string> refusal_;
    std::string error_text_, to_program_, on_line_, received_;
    Clock_time input_free_{};
    std::size_t most_queued_ = 0;
    std::vector<Clock_time> times_;
    std::multimap<std::size_t, std::function<void()>> triggers_;
};

}  // namespace kelvane::testing
