#pragma once

#include <optional>
#include <string>

#include "machines/transfer_options.h"
#include "platform/event_loop.h"
#include "platform/message_box.h"
#include "platform/task.h"
#include "receive/received_code.h"
#include "receive/received_text.h"
#include "transmit/code_tables.h"

namespace kelvane {

/// The tape code of received bytes: recognised in them or, where the machine's record says so,
/// taken from it. No value when it cannot be recognised.
[[nodiscard]] std::optional<Received_code> code_of(std::string_view raw,
                                                   const Transfer_options& options);

/// The box that tells that the tape code is not known.
[[nodiscard]] Message unrecognised_box();

/// What the machine's record drops from them; `options` outlive it.
[[nodiscard]] Conversion_options conversion_options(const Transfer_options& options);

/// The text of `raw`, which outlives the task; the program goes on meanwhile.
[[nodiscard]] Task<std::string> converted_text(Event_loop& loop, const Code_tables& tables,
                                               std::string_view raw, Received_code code,
                                               Conversion_options options);

}  // namespace kelvane
