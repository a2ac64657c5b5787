#pragma once

#include <string>

#include "simulated_machine/contact.h"
#include "simulated_machine/line.h"
#include "simulated_machine/options.h"

namespace kelvane::simulated {

/// Reads one program into the job's files and reports.
[[nodiscard]] Outcome read_job(const Options& options, Line& line, Contact& contact,
                               const Job& job);

/// Punches the job's file and reports.
[[nodiscard]] Outcome punch_job(const Options& options, Line& line, Contact& contact,
                                const Job& job);

/// Does the jobs of the command line in order; ends at the first that fails. Then waits for the
/// partner to close the line, so that it does not see an adapter pulled out.
[[nodiscard]] Outcome run_jobs(const Options& options, Line& line);

/// Writes a job's report to where the options say; false when the file cannot be written.
[[nodiscard]] bool deliver_report(const Options& options, const std::string& text);

}  // namespace kelvane::simulated
