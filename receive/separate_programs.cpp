#include "receive/separate_programs.h"

#include <algorithm>
#include <cmath>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

/// Takes the next line of `rest`, without its line end.
std::string_view take_line(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

bool begins_program(std::string_view line) {
    return line.starts_with('O') || line.starts_with(':');
}

std::int64_t number_of(std::string_view line) {
    constexpr double highest = 9e15;
    return std::llrint(std::clamp(Val(line.substr(1)), -highest, highest));
}

}  // namespace

std::optional<std::vector<Received_program>> separate_programs(std::string_view text) {
    std::vector<Received_program> programs;
    while (!text.empty()) {
        const std::string_view line = take_line(text);
        if (begins_program(line)) {
            if (programs.size() == most_programs) {
                return std::nullopt;
            }
            programs.push_back({number_of(line), {}});
        }
        if (!programs.empty()) {
            programs.back().text.append(line).append(cr_lf);
        }
    }
    return programs;
}

std::string program_file_name(std::string_view path, std::int64_t number) {
    return std::string(path) + " O" + Str(number);
}

std::string as_complete_lines(std::string_view text) {
    std::string lines;
    while (!text.empty()) {
        lines.append(take_line(text)).append(cr_lf);
    }
    return lines;
}

}  // namespace kelvane
