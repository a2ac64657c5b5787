#pragma once

#include <optional>
#include <string>

#include "machines/transfer_options.h"

namespace kelvane {

/// A program line after the machine's send options, without its end of block: cut before `skipit`,
/// padded for TV parity. No value when nothing of the line is sent: it begins with `skipit`, is
/// blank (empty or one space) where those are deleted, or holds `Skip_lines`.
[[nodiscard]] std::optional<std::string> line_as_sent(std::string line,
                                                      const Transfer_options& options);

}  // namespace kelvane
