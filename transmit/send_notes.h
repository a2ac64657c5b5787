#pragma once

#include <string>
#include <string_view>

#include "machines/transfer_options.h"
#include "platform/event_loop.h"
#include "platform/task.h"
#include "transmit/code_tables.h"

namespace kelvane {

/// What the operator should know of a program before it leaves, sentences with a line feed between
/// them: its own "%" comes on top of the leader's or trailer's; characters have no code in the
/// machine's tape code. Empty when nothing is to be said. Called files are not looked at.
/// Everything handed in outlives the task, which lets others in.
[[nodiscard]] Task<std::string> notes_before_send(Event_loop& loop, std::string_view program,
                                                  const Transfer_options& options,
                                                  const Code_tables& tables);

}  // namespace kelvane
