#pragma once

#include <string>

#include "resequence/engine.h"

namespace kelvane {

/// The operator's words for a result without a new text, in two lines or one; empty for a new text
/// and for a cancelled run, of which nothing needs saying.
std::string refusal_text(const Resequence_result& result);

/// The report of a run that is done, as it goes in front of the renumbered program.
std::string success_report(const std::string& filename, const std::string& backup);

/// The report of a run that failed at a file or at a limit. `reason` is one or more lines.
std::string failure_report(const std::string& filename, const std::string& reason);

}  // namespace kelvane
