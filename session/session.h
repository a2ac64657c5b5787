#pragma once

#include "platform/desktop_services.h"
#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/serial_port.h"
#include "session/operator.h"
#include "session/shared_state.h"
#include "session/transfer_control.h"

namespace kelvane {

/// What every transfer works with; all of it outlives the transfer.
struct Session {
    Event_loop& loop;
    Serial_comm& port;  ///< open from the start of a transfer to its end only
    Files& files;
    Desktop_services& desktop;  ///< date, time, beep
    Operator& op;               ///< log, progress, questions: the window, as transfers see it
    Transfer_control& control;  ///< the one writer of what goes on
    const Shared_state& state;  ///< read at the start of a transfer, not while it runs
};

}  // namespace kelvane
