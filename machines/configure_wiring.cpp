#include <algorithm>

#include "machines/configure_form.h"

// The device behind the COM number, and the devices that are there now.

namespace kelvane {

namespace {

std::string device_text(const Serial_device& device) {
    return device.description.empty() ? device.path : device.path + "  " + device.description;
}

}  // namespace

void configure_IO_lite::attach_wiring() {
    device_hint.plain = true;
    COM_lst.on_mouse_down = [this] { show_wiring(); };
    Device_txt.on_change = [this] { device_changed(); };
    Device_lst.on_mouse_down = [this] {
        Device_txt.set_text(found_[static_cast<std::size_t>(Device_lst.selected())].path);
    };
    device_timer.on_tick = [this] { refresh_devices(); };
}

void configure_IO_lite::show_wiring() {
    Device_txt.set_text(wiring_.device(shown_com_port()));
    show_found_device();
}

void configure_IO_lite::device_changed() {
    const int port = shown_com_port();
    if (Device_txt.text() != wiring_.device(port)) {
        wiring_.set_device(port, Device_txt.text());
    }
    show_found_device();
}

void configure_IO_lite::refresh_devices() {
    found_ = platform_.desktop.serial_devices();
    std::vector<std::string> texts;
    std::transform(found_.begin(), found_.end(), std::back_inserter(texts), device_text);
    if (texts != Device_lst.items()) {
        Device_lst.set_items(std::move(texts));
    }
    show_found_device();
}

void configure_IO_lite::show_found_device() {
    const auto found = std::find_if(found_.begin(), found_.end(), [this](const auto& device) {
        return device.path == Device_txt.text();
    });
    const bool is_there = found != found_.end();
    const int position = is_there ? static_cast<int>(found - found_.begin()) : -1;
    if (Device_lst.selected() != position) {
        Device_lst.select(position);
    }
    device_hint.set_caption(found_.empty() ? "No serial device is there now."
                            : is_there     ? ""
                                           : "This device is not among those found now.");
}

}  // namespace kelvane
