#pragma once

#include <cstddef>
#include <optional>

namespace kelvane {

/// What a transfer is doing; the status bar says it in words.
enum class Transfer_state {
    idle,
    preparing,          ///< the port opens, the working copy is made, select codes leave
    waiting_for_start,  ///< of a send: for the machine's Xon or the Send button
    sending,            ///< characters leave as fast as the line takes them
    held_by_xoff,       ///< by the machine, until its Xon
    held_by_cts,        ///< by the machine, until it raises CTS
    paused,             ///< by the operator, under Xon/Xoff
    draining,           ///< all is handed over; the last characters leave
    waiting_for_data,   ///< of a receive: nothing has come yet
    receiving,          ///< from the first data until the line is silent
    converting,         ///< from tape code to text; the port is closed
    saving,
};
/// How many there are.
inline constexpr std::size_t transfer_states = 12;

/// What can happen to a transfer.
enum class Transfer_event {
    begun,             ///< its settings have been read, its port is about to be opened
    send_prepared,     ///< the select codes have left: the start is awaited
    receive_prepared,  ///< the staging file is empty, the select codes have left
    output_free,       ///< flow control lets the next characters go
    xoff_holds,        ///< an Xoff of the machine's is in force
    cts_holds,         ///< CTS is low
    stop_holds,        ///< Stop has been pressed once, under Xon/Xoff
    all_sent,          ///< nothing more is handed to the line
    data_stored,       ///< what has come is in the staging file
    line_silent,       ///< for the machine's time-out, after data
    converted,         ///< the text is complete, or the bytes stay as they are
    send_pressed,
    stop_pressed,
    ended,  ///< whatever the outcome
};
/// How many there are.
inline constexpr std::size_t transfer_events = 14;

/// The state after `event`, which may be the same one; no value when the state does not allow it.
[[nodiscard]] std::optional<Transfer_state> state_after(Transfer_state state, Transfer_event event);

}  // namespace kelvane
