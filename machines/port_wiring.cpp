#include "machines/port_wiring.h"

#include "machines/port_devices.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

std::string path_of_devices(const Files& files) {
    return files.program_path(file_names::serial_port_devices);
}

}  // namespace

Result<std::string> read_device(const Files& files, int com_port) {
    const auto text = files.read(path_of_devices(files));
    if (text.unreadable()) {
        return text.failure();
    }
    return device_of_port(text.value_or(""), com_port);
}

Result<std::string> Port_wiring::device(int com_port) const {
    const auto change = changes_.find(com_port);
    return change != changes_.end() ? change->second : read_device(files_, com_port);
}

void Port_wiring::set_device(int com_port, const std::string& device) {
    changes_[com_port] = device;
}

Result<> Port_wiring::store() {
    if (changes_.empty()) {
        return {};
    }
    const std::string path = path_of_devices(files_);
    const auto old_text = files_.read(path);
    if (old_text.unreadable()) {
        return old_text.failure();
    }
    std::string text = old_text.value_or("");
    for (const auto& [com_port, device] : changes_) {
        if (device != device_of_port(text, com_port)) {
            text = text_with_device(text, com_port, device);
        }
    }
    if (text != old_text.value_or("")) {
        if (auto written = files_.replace(path, text); !written) {
            return written;
        }
    }
    forget();
    return {};
}

}  // namespace kelvane
