#include "frame/command_line.h"

#include "platform/basic_text.h"

namespace kelvane {

void parse_command_line(std::string_view line, Shared_state& state) {
    state.Command_line = line.empty() ? 0 : -1;
    const std::size_t bar = line.find('|');
    if (bar == std::string_view::npos) {
        state.Command_line_open = line;
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

std::string command_line_error(std::string_view line) {
    if (line.starts_with('-')) {
        return "Unknown option " + std::string(line.substr(0, line.find(' ')));
    }
    const std::size_t bar = line.find('|');
    const std::string event(line.substr(0, bar));
    const int number = whole_number(event);
    const bool is_job = bar != std::string_view::npos;
    return is_job && (number < 1 || number > 6) ? "There is no job " + event : std::string();
}

std::string_view usage_text() {
    return "Usage: kelvane-lite [FILE]\n"
           "       kelvane-lite \"JOB|FILE[|MACHINE]\"\n"
           "       kelvane-lite --help | --version\n"
           "\n"
           "FILE alone is opened in the editor.\n"
           "Jobs: 1 send, 2 receive, 3 print, 4 resequence, 5 binary send, 6 binary receive.\n"
           "Exit status: 0 done, 1 not done, 2 wrong usage, 3 another instance is running.\n";
}

}  // namespace kelvane
