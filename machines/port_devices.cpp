#include "machines/port_devices.h"

#include "platform/basic_text.h"

namespace kelvane {

namespace {

/// The first line of `rest` with its line end, taken off it.
std::string_view take_line(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::size_t length = end == std::string_view::npos ? rest.size() : end + 1;
    const std::string_view line = rest.substr(0, length);
    rest.remove_prefix(length);
    return line;
}

/// What the line wires the number to; no value when it is not the number's line.
std::optional<std::string_view> device_in_line(std::string_view line, int com_port) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos ||
        upper_case(trimmed(line.substr(0, equals))) != "COM" + decimal(com_port)) {
        return std::nullopt;
    }
    return trimmed(line.substr(equals + 1));
}

}  // namespace

std::optional<std::string> wired_device(std::string_view text, int com_port) {
    while (!text.empty()) {
        if (const auto device = device_in_line(take_line(text), com_port)) {
            return device->empty() ? std::nullopt : std::optional<std::string>(*device);
        }
    }
    return std::nullopt;
}

std::string usual_device(int com_port) {
#ifdef _WIN32
    return "COM" + decimal(com_port);
#else
    return "/dev/ttyS" + decimal(com_port - 1);
#endif
}

std::string device_of_port(std::string_view text, int com_port) {
    return wired_device(text, com_port).value_or(usual_device(com_port));
}

std::string text_with_device(std::string_view text, int com_port, std::string_view device) {
    const std::string_view wanted = trimmed(device);
    std::string new_line;
    if (!wanted.empty()) {
        new_line.append("COM").append(decimal(com_port)).append("=").append(wanted).append(cr_lf);
    }
    std::string result;
    while (!text.empty()) {
        const std::string_view line = take_line(text);
        if (device_in_line(line, com_port)) {
            result += new_line;
            new_line.clear();
        } else {
            result += line;
        }
    }
    if (!new_line.empty() && !result.empty() && result.back() != '\n') {
        result += cr_lf;
    }
    return result + new_line;
}

}  // namespace kelvane
