#include "machines/wiring_panel.h"

#include <algorithm>
#include <string_view>

#include "machines/configure_form.h"

namespace kelvane {

namespace {

constexpr int device_interval = 2000;

/// What the device says of itself stands before a lasting name, which is long.
std::string device_text(const Serial_device& device) {
    if (device.description.empty()) {
        return device.path;
    }
    return device.path == device.node ? device.path + "  " + device.description
                                      : device.description + "  " + device.path;
}

/// A name by the socket leads to what is plugged into it, whatever else there is.
bool stays(const Serial_device& device, std::string_view name) {
    return name == device.path || name.find("/by-path/") != std::string_view::npos;
}

bool leads_to(const Serial_device& device, std::string_view name) {
    return name == device.path || name == device.node ||
           std::find(device.names.begin(), device.names.end(), name) != device.names.end();
}

}  // namespace

Wiring_panel::Wiring_panel(Platform& platform, configure_IO_lite& form)
    : device_timer(platform.loop, device_interval),
      form_(form),
      desktop_(platform.desktop),
      wiring_(platform.files) {
    device_hint.plain = true;
    form.COM_lst.on_mouse_down = [this] { show(); };
    Device_txt.on_change = [this] { device_changed(); };
    Device_lst.on_mouse_down = [this] {
        Device_txt.set_text(found_[static_cast<std::size_t>(Device_lst.selected())].path);
    };
    lasting_button.on_click = [this] {
        if (const Serial_device* device = shown_device()) {
            Device_txt.set_text(std::string(device->path));
        }
    };
    device_timer.on_tick = [this] { refresh(); };
}

void Wiring_panel::begin() {
    wiring_.forget();
    show();
    refresh();
    device_timer.set_enabled(true);
}

void Wiring_panel::show() {
    const auto device = wiring_.device(form_.shown_com_port());
    unreadable_ = device.reason();
    Device_txt.set_enabled(device.has_value());
    Device_lst.set_enabled(device.has_value());
    Device_txt.set_text(device.value_or(""));
    show_found_device();
}

void Wiring_panel::device_changed() {
    const int port = form_.shown_com_port();
    const auto device = wiring_.device(port);
    unreadable_ = device.reason();
    if (device && Device_txt.text() != *device) {
        wiring_.set_device(port, Device_txt.text());
    }
    show_found_device();
}

void Wiring_panel::refresh() {
    found_ = desktop_.serial_devices();
    std::vector<std::string> texts;
    std::transform(found_.begin(), found_.end(), std::back_inserter(texts), device_text);
    if (texts != Device_lst.items()) {
        Device_lst.set_items(std::move(texts));
    }
    show_found_device();
}

const Serial_device* Wiring_panel::shown_device() const {
    const auto found = std::find_if(found_.begin(), found_.end(), [this](const auto& device) {
        return leads_to(device, Device_txt.text());
    });
    return found == found_.end() ? nullptr : &*found;
}

int Wiring_panel::xoff_delay() const {
    const Serial_device* device = shown_device();
    return device == nullptr ? 0 : device->xoff_delay;
}

void Wiring_panel::show_found_device() {
    const Serial_device* device = shown_device();
    const int position = device == nullptr ? -1 : static_cast<int>(device - found_.data());
    if (Device_lst.selected() != position) {
        Device_lst.select(position);
    }
    device_hint.set_caption(hint(device));
    lasting_button.set_enabled(Device_txt.enabled() && device != nullptr &&
                               !stays(*device, Device_txt.text()));
}

std::string Wiring_panel::hint(const Serial_device* device) const {
    if (!unreadable_.empty()) {
        return "What COM numbers are wired to cannot be read: " + unreadable_;
    }
    if (found_.empty()) {
        return "No serial device is there now.";
    }
    if (device == nullptr) {
        return "This device is not among those found now.";
    }
    return stays(*device, Device_txt.text())
               ? ""
               : "After a restart this name may be another adapter's.";
}

}  // namespace kelvane
