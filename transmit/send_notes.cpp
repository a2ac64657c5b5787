#include "transmit/send_notes.h"

#include <algorithm>

#include "platform/basic_text.h"
#include "platform/lines.h"
#include "transmit/line_options.h"

namespace kelvane {

namespace {

struct Without_code {
    std::size_t count = 0;
    std::size_t first_line = 0;  ///< from 1
};

bool has_percent(std::string_view text) {
    return text.find('%') != std::string_view::npos;
}

std::string percent_note(const Transfer_options& options) {
    const bool leader = has_percent(options.leader);
    const bool trailer = has_percent(options.trailer);
    const std::string where = leader && trailer ? "the leader and the trailer"
                              : leader          ? "the leader"
                                                : "the trailer";
    return "The file has its own \"%\", and so " +
           std::string(leader && trailer ? "have " : "has ") + where + ": the machine gets both";
}

std::string code_note(const Without_code& found, Tape_code code) {
    const bool one = found.count == 1;
    return grouped_decimal(found.count) + (one ? " character has" : " characters have") +
           " no code in " + std::string(tape_code_name(code)) +
           (one ? ": line " : ": first in line ") + grouped_decimal(found.first_line);
}

}  // namespace

Task<std::string> notes_before_send(Event_loop& loop, std::string_view program,
                                    const Transfer_options& options, const Code_tables& tables) {
    const auto lacks_code = [&](char c) {
        return c != '\0' && tables.sent_byte(c, options.TX_code) == '\0' &&
               options.TX_Mask.find(c) == std::string::npos;
    };
    Without_code without;
    bool own_percent = false;
    std::size_t number = 0;
    for (Lines lines(program); !lines.at_end();) {
        const auto sent = line_as_sent(std::string(lines.take()), options);
        ++number;
        if (!sent) {
            continue;
        }
        own_percent = own_percent || sent->starts_with('%');
        const auto lacking = std::count_if(sent->begin(), sent->end(), lacks_code);
        without.first_line = without.count == 0 ? number : without.first_line;
        without.count += static_cast<std::size_t>(lacking);
        co_await loop.breath();
    }
    std::string notes;
    if (own_percent && (has_percent(options.leader) || has_percent(options.trailer))) {
        notes = percent_note(options);
    }
    if (without.count > 0) {
        notes += (notes.empty() ? "" : "\n") + code_note(without, options.TX_code);
    }
    co_return notes;
}

}  // namespace kelvane
