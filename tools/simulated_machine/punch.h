#pragma once

#include <string>
#include <string_view>

#include "simulated_machine/contact.h"
#include "simulated_machine/line.h"
#include "simulated_machine/report.h"

namespace kelvane::simulated {

/// Everything that goes over the line for a program: DC2 (unless that is repeated until answered),
/// leader, "%", program, "%", trailer, DC4; or the program alone.
[[nodiscard]] std::string tape_of(std::string_view program, const Options& options);

/// The machine punches one program to the line.
class Punch {
  public:
    Punch(const Options& options, Line& line, Contact& contact, std::string_view program);

    /// Punches until all is out, the partner closes the line or it ends. Adds to the report.
    [[nodiscard]] Outcome run(Report& report);

  private:
    [[nodiscard]] std::optional<Outcome> step();
    void listen();
    void hold(Time now);
    void knock(Time now);
    void feed();
    [[nodiscard]] Time next_moment() const;
    void describe(Report& report, Outcome outcome) const;

    const Options& options_;
    Line& line_;
    Contact& contact_;
    std::string tape_;
    std::size_t position_ = 0;  // in the tape, of the next byte to queue
    bool answered_;             // the partner has answered the DC2
    std::size_t knocks_ = 0;
    Time next_knock_{};
    bool held_ = false;
    Time held_since_{};
    Duration held_time_{};
    std::size_t holds_ = 0;
    Time first_start_{};
};

}  // namespace kelvane::simulated
