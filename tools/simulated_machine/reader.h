#pragma once

#include <string>

#include "simulated_machine/contact.h"
#include "simulated_machine/flow.h"
#include "simulated_machine/input_buffer.h"
#include "simulated_machine/line.h"
#include "simulated_machine/program_text.h"
#include "simulated_machine/report.h"

namespace kelvane::simulated {

/// The machine reads one program from the line.
class Reader {
  public:
    /// Without asking, the machine sends no first DC1 but takes what comes.
    Reader(const Options& options, Line& line, Contact& contact, bool asks);

    /// Reads until the program ends, something goes wrong or the line does. Adds to the report.
    [[nodiscard]] Outcome run(Report& report);

    /// The program, or what came of it: text, or the bytes themselves in binary mode.
    [[nodiscard]] std::string content() const { return options_.binary ? raw_ : text_.text(); }

    /// The bytes of the line.
    [[nodiscard]] const std::string& raw() const { return raw_; }

  private:
    [[nodiscard]] std::optional<Outcome> step();
    [[nodiscard]] std::optional<Outcome> accept(const Arrival& arrival);
    [[nodiscard]] std::optional<Outcome> alarm(Outcome outcome, const std::string& message);
    void ask(Time now);
    void regulate(Time now);
    void look_out();
    [[nodiscard]] std::optional<Outcome> ended(Time now);
    [[nodiscard]] std::optional<Outcome> end_as(Outcome outcome, std::string_view how);
    [[nodiscard]] Time next_ask() const;
    [[nodiscard]] Time silence_ends() const;
    [[nodiscard]] Time resume_time() const;
    void say_goodbye();
    void describe(Report& report, Outcome outcome) const;

    const Options& options_;
    Line& line_;
    Contact& contact_;
    bool asks_;
    Input_buffer buffer_;
    Flow flow_;
    Program_text text_;
    std::string raw_;
    std::optional<Time> asked_at_;
    Time first_{};  // when the first byte had come
    Time last_{};
    Time paused_until_{};
    std::string_view end_ = "none";
    std::string message_;
};

}  // namespace kelvane::simulated
