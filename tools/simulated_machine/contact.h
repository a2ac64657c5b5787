#pragma once

#include <cstdint>
#include <string>

#include "simulated_machine/line.h"
#include "simulated_machine/options.h"

namespace kelvane::simulated {

/// Tells whether the partner is connected to the machine: the line open and, with a switchbox in
/// front, the select sequence gone by since it was opened.
class Contact {
  public:
    Contact(const Options& options, Line& line);

    /// The line must be closed and opened again before there is contact.
    void await_new_session() {
        first_session_ = line_.sessions() + 1;
        selected_ = false;
    }

    /// Looks whether the line was opened anew; to be called after each wait. True when it was.
    bool update();

    /// Whether the machine gets this byte; what comes before there is contact is for the switchbox.
    [[nodiscard]] bool passes(std::uint8_t byte);

    /// When the machine may speak first; never as long as there is no contact.
    [[nodiscard]] Time begins_at() const { return selected_ ? since_ + start_delay_ : never; }

  private:
    void select();

    Line& line_;
    std::string sequence_;  // as bytes of the line
    std::string seen_;      // the last bytes that came by
    Duration start_delay_;
    int first_session_ = 1;
    int session_ = 0;
    bool selected_ = false;
    Time since_{};
};

}  // namespace kelvane::simulated
