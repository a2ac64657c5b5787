#pragma once

#include <vector>

#include "machines/port_wiring.h"
#include "platform/controls.h"
#include "platform/desktop_services.h"
#include "platform/event_loop.h"
#include "platform/platform.h"

namespace kelvane {

class configure_IO_lite;

/// The part of the configuration form that shows the device behind the COM number and the devices
/// that are there now. Changes are kept until they are stored.
class Wiring_panel {
  public:
    /// `form` holds the list of COM numbers.
    Wiring_panel(Platform& platform, configure_IO_lite& form);

    Text_box Device_txt{"Device_txt", "&Wired to:"};
    List_box Device_lst{"Device_lst", "Devices &found now:"};
    /// What is to be said of the device: that it is not there, or that none is, or that its name
    /// may become another's.
    Label device_hint{"device_hint"};
    /// Wires the number to the name that stays with the device, when another one is shown.
    Button lasting_button{"lasting_button", "Keep to this adapter"};
    Timer device_timer;  ///< 2 s: the serial devices found now

    /// Forgets changes and looks for devices from now on.
    void begin();
    void end() { device_timer.set_enabled(false); }
    /// Shows the device of the COM number that the form shows.
    void show();
    /// Characters by which the shown device sees a lone Xoff late; 0 when it is not there.
    [[nodiscard]] int xoff_delay() const;
    /// Stores the changes. When that fails they are kept, and the file is as it was.
    [[nodiscard]] Result<> store() { return wiring_.store(); }

  private:
    void device_changed();
    void refresh();
    void show_found_device();
    /// The device that is shown, under whichever of its names; null when it is not there.
    [[nodiscard]] const Serial_device* shown_device() const;
    [[nodiscard]] std::string hint(const Serial_device* device) const;

    configure_IO_lite& form_;
    Desktop_services& desktop_;
    std::vector<Serial_device> found_;
    Port_wiring wiring_;
    std::string unreadable_;  ///< why the wiring cannot be read; empty when it can
};

}  // namespace kelvane
