#pragma once

#include <cstddef>
#include <optional>

namespace kelvane {

/// What a transfer is doing; the status bar says it in words.
enum class Transfer_state {
    idle,
    preparing,
    waiting_for_start,  ///< of a send: for the machine's Xon or the Send button
    sending,
    held_by_xoff,
    held_by_cts,
    paused,  ///< by the operator, under Xon/Xoff
    draining,
    waiting_for_data,
    receiving,
    converting,
    saving,
};
inline constexpr std::size_t transfer_states = 12;

/// What can happen to a transfer.
enum class Transfer_event {
    begun,
    send_prepared,
    receive_prepared,
    output_free,  ///< flow control lets the next characters go
    xoff_holds,
    cts_holds,
    stop_holds,
    all_sent,
    data_stored,
    line_silent,  ///< for the machine's time-out, after data
    converted,
    send_pressed,
    stop_pressed,
    ended,
};
inline constexpr std::size_t transfer_events = 14;

/// The state after `event`, which may be the same one; no value when the state does not allow it.
[[nodiscard]] std::optional<Transfer_state> state_after(Transfer_state state, Transfer_event event);

}  // namespace kelvane
