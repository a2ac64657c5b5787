#include "simulated_machine/report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace kelvane::simulated {

void Report::add(std::string_view key, std::string_view value) {
    text_.append(key).append("=").append(value).append("\n");
}

void Report::add(std::string_view key, double value) {
    std::array<char, 64> digits{};
    std::snprintf(digits.data(), digits.size(), "%.3f", value);
    add(key, std::string_view(digits.data()));
}

void add_line_use(Report& report, std::size_t bytes, Time first_start, Time last_end,
                  Duration character_time) {
    const double taken = bytes > 0 ? seconds(last_end - first_start) : 0;
    const double needed = seconds(character_time) * static_cast<double>(bytes);
    report.add("bytes", bytes);
    report.add("seconds", taken);
    report.add("line_use_percent", taken > 0 ? 100 * needed / taken : 0.0);
}

double seconds(Duration duration) {
    return std::chrono::duration<double>(duration).count();
}

std::string_view name_of(Outcome outcome) {
    static constexpr std::array<std::string_view, 10> names{
        "done",          "trouble",      "usage",   "alarm after Xoff", "parity alarm",
        "overrun alarm", "closed early", "hung up", "timed out",        "stopped"};
    return names.at(static_cast<std::size_t>(outcome));
}

bool write_file(const std::string& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    return !file.fail();
}

bool append_file(const std::string& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::app);
    file << content;
    file.close();
    return !file.fail();
}

bool read_file(const std::string& path, std::string& content) {
    std::ifstream file(path, std::ios::binary);
    content.assign(std::istreambuf_iterator<char>(file), {});
    return file.good() || file.eof();
}

}  // namespace kelvane::simulated
