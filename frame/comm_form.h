#pragma once

#include "platform/form.h"
#include "platform/serial_port.h"

namespace kelvane {

/// The window that is never shown and holds the serial port; unloading it closes the port.
class Comm_form_lite : public Form {
  public:
    /// `port` outlives the form.
    Comm_form_lite(Window_system& windows, Serial_comm& port)
        : Form(windows, "Comm_form_lite", {}), Serial_comm1(port) {}

    Serial_comm& Serial_comm1;

  protected:
    void on_unload() override { Serial_comm1.close(); }
};

}  // namespace kelvane
