#include "frame/command_line.h"

#include "platform/basic_text.h"

namespace kelvane {

void parse_command_line(std::string_view line, Shared_state& state) {
    state.Command_line = line.empty() ? 0 : -1;
    const std::size_t bar = line.find('|');
    if (bar == std::string_view::npos) {
        return;
    }
    state.Command_line_event = whole_number(line.substr(0, bar));
    const std::string_view rest = line.substr(bar + 1);
    const std::size_t second = rest.find('|');
    state.Command_line_filename = rest.substr(0, second);
    if (second != std::string_view::npos) {
        state.Command_line_machine = rest.substr(second + 1);
    }
}

}  // namespace kelvane
