#pragma once

#include <deque>
#include <string>

#include "simulated_machine/contact.h"
#include "simulated_machine/line.h"
#include "simulated_machine/options.h"

namespace kelvane::simulated {

/// The machine with an operator in front of it: orders come as lines of standard input, programs
/// live in a folder, and what the partner sends unasked is read too.
class Console {
  public:
    Console(const Options& options, Line& line);

    /// Serves until "quit", a signal or the end of the line.
    [[nodiscard]] Outcome run();

  private:
    void take_input();
    [[nodiscard]] bool interrupted();
    [[nodiscard]] std::optional<Outcome> idle();
    [[nodiscard]] std::optional<Outcome> obey(const std::string& order);
    [[nodiscard]] std::optional<Outcome> obey_signals();
    [[nodiscard]] bool program_begins();
    [[nodiscard]] std::optional<Outcome> read(const std::string& name, bool asks);
    [[nodiscard]] std::optional<Outcome> punch(const std::string& name);
    [[nodiscard]] static std::optional<Outcome> go_on_after(Outcome outcome);
    [[nodiscard]] std::string path_of(const std::string& name) const;
    void list() const;

    const Options& options_;
    Line& line_;
    Contact contact_;
    std::string typed_;
    std::deque<std::string> orders_;
    std::string last_program_;
};

}  // namespace kelvane::simulated
