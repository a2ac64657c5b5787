#pragma once

#include <string>
#include <string_view>

#include "simulated_machine/outcome.h"

namespace kelvane::simulated {

/// What a job has to tell, as key=value lines.
class Report {
  public:
    void add(std::string_view key, std::string_view value);
    void add(std::string_view key, std::size_t value) { add(key, std::to_string(value)); }

    /// Seconds, or percent, with three decimals.
    void add(std::string_view key, double value);

    [[nodiscard]] const std::string& text() const { return text_; }

  private:
    std::string text_;
};

/// Adds "bytes", "seconds" and "line_use_percent": what the line carried from the start of the
/// first character to the end of the last one, against what it could have carried.
void add_line_use(Report& report, std::size_t bytes, Time first_start, Time last_end,
                  Duration character_time);

[[nodiscard]] double seconds(Duration duration);

/// The outcome's name in reports, as "done" or "parity alarm".
[[nodiscard]] std::string_view name_of(Outcome outcome);

/// Whole-file input and output; false, or no value, when it fails.
[[nodiscard]] bool write_file(const std::string& path, std::string_view content);
[[nodiscard]] bool append_file(const std::string& path, std::string_view content);
[[nodiscard]] bool read_file(const std::string& path, std::string& content);

}  // namespace kelvane::simulated
