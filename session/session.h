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
    Serial_comm& port;
    Files& files;
    Desktop_services& desktop;
    Operator& op;
    Transfer_control& control;
    const Shared_state& state;
};

}  // namespace kelvane
