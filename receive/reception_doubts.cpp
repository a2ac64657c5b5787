#include "receive/reception_doubts.h"

#include <algorithm>
#include <bit>
#include <optional>

#include "platform/basic_text.h"
#include "session/control_characters.h"

namespace kelvane {

namespace {

constexpr std::size_t most_lines_told = 10;

bool is_odd(char byte) {
    return std::popcount(static_cast<unsigned char>(byte)) % 2 != 0;
}

bool carries_parity(char byte) {
    const char bare = without_parity(byte);
    const bool is_device_control = bare >= control::dc1 && bare <= control::dc4;
    return bare != '\0' && bare != '\x7f' && !is_device_control;
}

/// The parity that the characters follow: true for odd. No value when they follow none.
std::optional<bool> parity_of(std::string_view raw, Receive_column column) {
    std::size_t counts[2] = {0, 0};
    bool bit_7 = column == receive_eia;
    for (const char byte : raw) {
        if (carries_parity(byte)) {
            ++counts[is_odd(byte) ? 1 : 0];
            bit_7 = bit_7 || (byte & 0x80) != 0;
        }
    }
    const bool odd = column == receive_eia || counts[1] > counts[0];
    const std::size_t quarter = (counts[0] + counts[1]) / 4;
    const std::size_t others = counts[odd ? 0 : 1];
    return bit_7 && others <= quarter ? std::optional(odd) : std::nullopt;
}

/// `raw` without what the options leave out at its two ends.
std::string_view kept_part(std::string_view raw, char end_of_block,
                           const Conversion_options& options) {
    if (options.ignore_after) {
        raw = raw.substr(0, raw.rfind(end_of_block) + 1);
    }
    const std::size_t first = raw.find(end_of_block);
    if (options.ignore_before && first != std::string_view::npos) {
        raw = raw.substr(first + 1);
    }
    return raw;
}

void add_removed(Reception_doubts& doubts, std::int16_t character, std::size_t line) {
    const char removed = static_cast<char>(character);
    if (removed > ' ' && removed < '\x7f') {
        doubts.removed.push_back(line);
        if (doubts.removed_characters.find(removed) == std::string::npos) {
            doubts.removed_characters += removed;
        }
    }
}

std::string lines_text(std::vector<std::size_t> lines) {
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    std::string text = lines.size() == 1 ? "line " : "lines ";
    for (std::size_t i = 0; i < std::min(lines.size(), most_lines_told); ++i) {
        text += (i == 0 ? "" : ", ") + std::to_string(lines[i]);
    }
    if (lines.size() > most_lines_told) {
        text += " and " + std::to_string(lines.size() - most_lines_told) + " more";
    }
    return text;
}

std::string counted(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " character" : " characters");
}

}  // namespace

Reception_doubts doubts_of(std::string_view raw, const Code_tables& tables,
                           const Received_code& code, const Conversion_options& options) {
    const auto end_of_block = static_cast<char>(code.end_of_block);
    raw = kept_part(raw, end_of_block, options);
    const std::optional<bool> odd = parity_of(raw, code.column);
    Reception_doubts doubts;
    std::size_t line = 1;
    for (const char byte : raw) {
        if (odd && carries_parity(byte) && is_odd(byte) != *odd) {
            doubts.wrong_parity.push_back(line);
        }
        if (byte == end_of_block) {
            ++line;
        } else if (options.unwanted.find(byte) != std::string_view::npos) {
            const auto& row = tables.reverse_code_table[static_cast<unsigned char>(byte)];
            add_removed(doubts, row[static_cast<std::size_t>(code.column)], line);
        }
    }
    return doubts;
}

void drop_lines(Reception_doubts& doubts, std::size_t count) {
    for (std::vector<std::size_t>* lines : {&doubts.wrong_parity, &doubts.removed}) {
        std::erase_if(*lines, [count](std::size_t line) { return line <= count; });
        for (std::size_t& line : *lines) {
            line -= count;
        }
    }
}

std::string doubts_text(const Reception_doubts& doubts) {
    std::string text;
    if (!doubts.wrong_parity.empty()) {
        text += counted(doubts.wrong_parity.size()) +
                " had wrong parity: " + lines_text(doubts.wrong_parity);
    }
    if (!doubts.removed.empty()) {
        text += (text.empty() ? "" : "\n") + counted(doubts.removed.size()) + " that may mean \"" +
                doubts.removed_characters + "\" in this tape code " +
                (doubts.removed.size() == 1 ? "was" : "were") +
                " removed: " + lines_text(doubts.removed);
    }
    return text;
}

}  // namespace kelvane
