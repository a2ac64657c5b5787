#include "machines/port_devices.h"

#include <cstdint>

#include "platform/basic_text.h"
#include "platform/lines.h"

namespace kelvane {

namespace {

/// What the line wires the number to; no value when it is not the number's line.
std::optional<std::string_view> device_in_line(std::string_view line, int com_port) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos ||
        upper_case(trimmed(line.substr(0, equals))) != com_name(com_port)) {
        return std::nullopt;
    }
    return trimmed(line.substr(equals + 1));
}

}  // namespace

std::string com_name(int com_port) {
    return "COM" + decimal(com_port);
}

std::optional<std::string> wired_device(std::string_view text, int com_port) {
    for (Lines lines(text); !lines.at_end();) {
        if (const auto device = device_in_line(lines.take(), com_port)) {
            return device->empty() ? std::nullopt : std::optional<std::string>(*device);
        }
    }
    return std::nullopt;
}

std::string usual_device(int com_port) {
#ifdef _WIN32
    return com_name(com_port);
#else
    return "/dev/ttyS" + decimal(std::int64_t{com_port} - 1);
#endif
}

std::string device_of_port(std::string_view text, int com_port) {
    return wired_device(text, com_port).value_or(usual_device(com_port));
}

std::string text_with_device(std::string_view text, int com_port, std::string_view device) {
    const std::string_view wanted = trimmed(device);
    std::string new_line;
    if (!wanted.empty()) {
        new_line.append(com_name(com_port)).append("=").append(wanted).append(cr_lf);
    }
    std::string result;
    for (Lines lines(text); !lines.at_end();) {
        const std::size_t start = lines.position();
        if (device_in_line(lines.take(), com_port)) {
            result += new_line;
            new_line.clear();
        } else {
            result += text.substr(start, lines.position() - start);
        }
    }
    if (!new_line.empty() && !result.empty() && result.back() != '\n') {
        result += cr_lf;
    }
    return result + new_line;
}

}  // namespace kelvane
