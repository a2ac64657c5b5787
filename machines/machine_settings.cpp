#include "machines/machine_settings.h"

#include <algorithm>

#include "machines/machine_fields.h"

namespace kelvane {

std::size_t read_machine_settings(Text_reader& reader, Old_port_form old_form,
                                  MachineSettings& settings) {
    std::size_t count = 0;
    std::string text;
    for (const Machine_field& field : machine_fields) {
        if (!reader.line(text)) {
            break;
        }
        field.text.read(text, old_form, settings);
        ++count;
    }
    return count;
}

std::string machine_settings_text(const MachineSettings& settings) {
    Text_writer writer;
    for (const Machine_field& field : machine_fields) {
        writer.line(one_line(field.text.write(settings)));
    }
    return writer.text();
}

int timeout_seconds(std::string_view text) {
    const int seconds = whole_number(text);
    return seconds <= 0 ? default_timeout_s : std::min(seconds, longest_timeout_s);
}

std::string stored_timeout(const std::string& text) {
    if (text.empty()) {
        return decimal(default_timeout_s);
    }
    return Val(text) > longest_timeout_s ? decimal(longest_timeout_s) : text;
}

std::string one_line(std::string_view text) {
    std::string result(text);
    std::erase_if(result, [](char c) { return c == '\r' || c == '\n'; });
    return result;
}

}  // namespace kelvane
