#pragma once

#include "platform/desktop_services.h"
#include "platform/event_loop.h"
#include "platform/file_dialog.h"
#include "platform/files.h"
#include "platform/form.h"
#include "platform/message_box.h"
#include "platform/serial_port.h"

namespace kelvane {

class Printer;

/// Everything outside the program that it works with, handed in at start-up. All outlive the
/// program.
struct Platform {
    Event_loop& loop;
    Window_system& windows;
    Message_box& message_box;
    File_dialog& file_dialog;
    Printer& printer;
    Serial_comm& port;
    Desktop_services& desktop;
    Files& files;
};

}  // namespace kelvane
