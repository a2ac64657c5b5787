#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kelvane::testing {

/// Lines of a machine's settings file: number from 1, text.
using Setting_lines = std::vector<std::pair<int, std::string>>;

/// The 25 lines of a plain machine (COM1, 9600, one stop bit, no parity, Xon/Xoff, CR LF, no leader
/// or trailer, nothing ignored, a receive ends after 3 s), with some of them replaced; a later
/// replacement of a line wins.
inline std::string plain_settings(const Setting_lines& replaced = {}) {
    std::vector<std::string> lines{"COM1", "BAUD 3", " 2", " 2",  " 1", " 3", "",     "", "NO",
                                   "NO",   "NO",     "5",  "YES", "",   "3",  "",     "", "0",
                                   "0",    "NO",     "NO", "0",   "",   "",   "False"};
    for (const auto& [number, text] : replaced) {
        lines.at(static_cast<std::size_t>(number - 1)) = text;
    }
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\r\n";
    }
    return text;
}

}  // namespace kelvane::testing
