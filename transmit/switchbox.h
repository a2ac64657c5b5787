#pragma once

#include <optional>

#include "transmit/sender.h"

namespace kelvane {

/// Beeps, so that the operator hears that a transfer is starting, and sends the select codes of the
/// transfer's machine, if it has any, in its tape code. When they cannot be read or decoded, the
/// end of the transfer: without its codes the program would go to the machine at which the
/// switchbox stands.
[[nodiscard]] Task<std::optional<Transfer_end>> Send_switchbox_codes(
    const Session& session, const Transfer_options& options, Text_sender& sender);

}  // namespace kelvane
