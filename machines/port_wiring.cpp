#include "machines/port_wiring.h"

#include "machines/port_devices.h"
#include "session/file_names.h"

namespace kelvane {

std::string Port_wiring::path() const {
    return files_.program_path(file_names::serial_port_devices);
}

std::string Port_wiring::device(int com_port) const {
    const auto change = changes_.find(com_port);
    return change != changes_.end() ? change->second
                                    : device_of_port(files_.read(path()).value_or(""), com_port);
}

void Port_wiring::set_device(int com_port, const std::string& device) {
    changes_[com_port] = device;
}

bool Port_wiring::store() {
    const auto old_text = files_.read(path());
    if (!old_text && files_.exists(path())) {
        return false;
    }
    std::string text = old_text.value_or("");
    for (const auto& [com_port, device] : changes_) {
        if (device != device_of_port(text, com_port)) {
            text = text_with_device(text, com_port, device);
        }
    }
    if (text != old_text.value_or("") && !files_.replace(path(), text)) {
        return false;
    }
    forget();
    return true;
}

}  // namespace kelvane
