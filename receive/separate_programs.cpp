#include "receive/separate_programs.h"

#include <algorithm>
#include <cmath>

#include "platform/basic_text.h"
#include "platform/lines.h"

namespace kelvane {

namespace {

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
    for (Lines lines(text); !lines.at_end();) {
        const std::string_view line = lines.take();
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

void keep_last_of_each_number(std::vector<Received_program>& programs) {
    for (auto program = programs.begin(); program != programs.end();) {
        const bool is_repeated = std::any_of(
            program + 1, programs.end(),
            [&](const Received_program& later) { return later.number == program->number; });
        program = is_repeated ? programs.erase(program) : program + 1;
    }
}

std::string program_file_name(std::string_view path, std::int64_t number) {
    return std::string(path) + " O" + Str(number);
}

std::string as_complete_lines(std::string_view text) {
    std::string complete;
    for (Lines lines(text); !lines.at_end();) {
        complete.append(lines.take()).append(cr_lf);
    }
    return complete;
}

}  // namespace kelvane
