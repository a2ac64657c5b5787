#include "transmit/line_options.h"

#include <algorithm>

namespace kelvane {

std::optional<std::string> line_as_sent(std::string line, const Transfer_options& options) {
    if (!options.skipit.empty()) {
        const std::size_t cut = line.find(options.skipit);
        if (cut == 0) {
            return std::nullopt;
        }
        line.resize(std::min(cut, line.size()));
    }
    if (options.Delete_blank_lines && (line.empty() || line == " ")) {
        return std::nullopt;
    }
    if (options.Send_TV_parity && (line.size() + options.TX_eob.size()) % 2 != 0) {
        line += ' ';
    }
    if (!options.Skip_lines.empty() && line.find(options.Skip_lines) != std::string::npos) {
        return std::nullopt;
    }
    return line;
}

}  // namespace kelvane
