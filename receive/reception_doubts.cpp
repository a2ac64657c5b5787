#include "receive/reception_doubts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
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

/// How often each byte occurs.
using Byte_counts = std::array<std::size_t, 256>;

/// In several tables by turns: a count waits until the one before in its table has been stored.
Byte_counts counts_of(std::string_view raw) {
    std::array<Byte_counts, 4> tables{};
    for (std::size_t at = 0; at < raw.size(); ++at) {
        ++tables[at % tables.size()][static_cast<unsigned char>(raw[at])];
    }
    Byte_counts counts{};
    for (const Byte_counts& table : tables) {
        std::transform(counts.begin(), counts.end(), table.begin(), counts.begin(), std::plus());
    }
    return counts;
}

/// Characters of even and of odd parity.
using Parities = std::array<std::size_t, 2>;

/// More than would follow a parity by chance.
bool most_follow(const Parities& group, bool odd) {
    return group[odd ? 1 : 0] * 2 >= group[odd ? 0 : 1] * 3;
}

/// The parity that the characters follow: true for odd. No value when they follow none: when they
/// are not nearly all, those that have its bit and those that have not must each do so mostly, and
/// more must have the bit than do otherwise.
std::optional<bool> parity_of(const Byte_counts& bytes, Receive_column column) {
    const bool eia = column == receive_eia;
    const int parity_bit = eia ? 0x10 : 0x80;
    Parities with_bit{};
    Parities without_bit{};
    for (std::size_t value = 0; value < bytes.size(); ++value) {
        const char byte = static_cast<char>(value);
        if (carries_parity(byte)) {
            ((byte & parity_bit) != 0 ? with_bit : without_bit)[is_odd(byte) ? 1 : 0] +=
                bytes[value];
        }
    }
    const Parities all = {with_bit[0] + without_bit[0], with_bit[1] + without_bit[1]};
    const bool odd = eia || all[1] > all[0];
    const std::size_t followers = all[odd ? 1 : 0];
    const std::size_t others = all[odd ? 0 : 1];
    const std::size_t having_bit = with_bit[0] + with_bit[1];
    const bool follow =
        others <= followers / 3
            ? eia || having_bit > 0
            : most_follow(with_bit, odd) && most_follow(without_bit, odd) && having_bit > others;
    return follow ? std::optional(odd) : std::nullopt;
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

/// What there is to say of a byte, wherever it comes.
struct Byte_doubt {
    bool wrong_parity = false;
    char removed = '\0';  ///< the character that it may mean; NUL: none
};

using Byte_doubts = std::array<Byte_doubt, 256>;

char removed_character(std::int16_t character) {
    const char removed = static_cast<char>(character);
    return removed > ' ' && removed < '\x7f' ? removed : '\0';
}

/// `odd`: the parity that the characters follow, if they do.
Byte_doubts byte_doubts_of(std::optional<bool> odd, const Code_tables& tables,
                           const Received_code& code, const Conversion_options& options) {
    Byte_doubts doubts;
    for (std::size_t value = 0; value < doubts.size(); ++value) {
        const char byte = static_cast<char>(value);
        doubts[value].wrong_parity = odd && carries_parity(byte) && is_odd(byte) != *odd;
        if (value != code.end_of_block && options.unwanted.find(byte) != std::string_view::npos) {
            const auto& row = tables.reverse_code_table[value];
            doubts[value].removed = removed_character(row[static_cast<std::size_t>(code.column)]);
        }
    }
    return doubts;
}

/// True when there is something to say of a byte that has come.
bool occurs(const Byte_doubts& doubts, const Byte_counts& counts) {
    for (std::size_t value = 0; value < doubts.size(); ++value) {
        if (counts[value] > 0 && (doubts[value].wrong_parity || doubts[value].removed != '\0')) {
            return true;
        }
    }
    return false;
}

void add(Reception_doubts& doubts, const Byte_doubt& doubt, std::size_t line) {
    if (doubt.wrong_parity) {
        doubts.wrong_parity.push_back(line);
    }
    if (doubt.removed != '\0') {
        doubts.removed.push_back(line);
        if (doubts.removed_characters.find(doubt.removed) == std::string::npos) {
            doubts.removed_characters += doubt.removed;
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
    const Byte_counts counts = counts_of(raw);
    const Byte_doubts of_byte =
        byte_doubts_of(parity_of(counts, code.column), tables, code, options);
    Reception_doubts doubts;
    if (!occurs(of_byte, counts)) {
        return doubts;
    }
    std::size_t line = 1;
    for (const char byte : raw) {
        add(doubts, of_byte[static_cast<unsigned char>(byte)], line);
        line += byte == end_of_block ? 1 : 0;
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
