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
    Event_loop& loop;          ///< the application's only one
    Window_system& windows;    ///< shows forms
    Message_box& message_box;  ///< one box at a time; the others wait for it
    File_dialog& file_dialog;
    Printer& printer;
    Serial_comm& port;          ///< the one line that can be open
    Desktop_services& desktop;  ///< sound, date, arguments, devices, the instance's lock
    Files& files;               ///< the program directory and all the rest of the disk
};

}  // namespace kelvane
