#include "platform/tape_image.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "platform/basic_text.h"
#include "platform/lines.h"
#include "platform/utf8.h"

namespace kelvane {

namespace {

constexpr std::size_t sample_size = 4096;
constexpr std::size_t fewest_characters = 8;
/// One byte in so many may be other than a tape image's.
constexpr std::size_t damaged_one_in = 10;
/// One byte in so many at least has bit 7, and one in so many has not.
constexpr std::size_t either_kind_one_in = 8;

constexpr char blank_tape = '\0';
constexpr char rub_out = '\x7F';

/// Bytes with, or without, bit 7.
struct Parity_count {
    std::size_t even = 0;
    std::size_t odd = 0;

    [[nodiscard]] std::size_t all() const { return even + odd; }
};

struct Statistics {
    Parity_count plain;  ///< bit 7 is clear
    Parity_count high;
    std::size_t control_characters = 0;  ///< in 7 bits neither printable nor a line end or a tab

    [[nodiscard]] std::size_t all() const { return plain.all() + high.all(); }
};

bool is_text(unsigned char seven_bits) {
    constexpr std::string_view layout = "\t\n\r";
    return (seven_bits >= ' ' && seven_bits < rub_out) ||
           layout.find(static_cast<char>(seven_bits)) != std::string_view::npos;
}

Statistics statistics_of(std::string_view sample) {
    Statistics result;
    for (const char c : sample) {
        const auto byte = static_cast<unsigned char>(c);
        const auto seven_bits = static_cast<unsigned char>(byte & 0x7FU);
        if (seven_bits == blank_tape || seven_bits == rub_out) {
            continue;
        }
        Parity_count& kind = byte < 0x80 ? result.plain : result.high;
        ++(std::popcount(byte) % 2 == 0 ? kind.even : kind.odd);
        result.control_characters += is_text(seven_bits) ? 0 : 1;
    }
    return result;
}

/// What `sample_size` bytes show of it: well-formed UTF-8 with characters beyond ASCII.
bool is_utf8_text(std::string_view text) {
    const std::size_t rest = text.size() - std::min(text.size(), sample_size);
    bool beyond_ascii = false;
    while (text.size() > rest) {
        const auto character = take_character(text);
        if (!character) {
            return false;
        }
        beyond_ascii = beyond_ascii || *character >= 0x80;
    }
    return beyond_ascii;
}

/// `exceptions` are few among `all`.
bool few(std::size_t exceptions, std::size_t all) {
    return exceptions * damaged_one_in <= all;
}

}  // namespace

bool is_tape_image(std::string_view sample) {
    sample.remove_prefix(std::min(sample.find_first_not_of(blank_tape), sample.size()));
    const Statistics found = statistics_of(sample.substr(0, sample_size));
    const auto& [plain, high, control_characters] = found;
    const bool even = few(plain.odd, plain.all()) && few(high.odd, high.all());
    const bool odd = few(plain.even, plain.all()) && few(high.even, high.all());
    const std::size_t rarer_kind = std::min(plain.all(), high.all());
    return found.all() >= fewest_characters && (even || odd) &&
           rarer_kind * either_kind_one_in >= found.all() && few(control_characters, found.all()) &&
           !is_utf8_text(sample);
}

std::string tape_image_text(std::string_view image) {
    std::string characters(image);
    std::transform(characters.begin(), characters.end(), characters.begin(),
                   [](char c) { return static_cast<char>(c & 0x7F); });
    std::string text;
    text.reserve(characters.size() + characters.size() / 16);
    for (std::size_t at = 0; at < characters.size();) {
        const std::size_t end = find_line_end(characters, at);
        const std::size_t end_length = line_end_length(characters, end);
        text.append(characters, at, end - at).append(end_length > 0 ? cr_lf : "");
        at = end + end_length;
    }
    return text;
}

std::string working_copy(std::string content) {
    return is_tape_image(content) ? tape_image_text(content) : std::move(content);
}

std::shared_ptr<const std::string> working_copy(std::shared_ptr<const std::string> content) {
    return is_tape_image(*content) ? std::make_shared<const std::string>(tape_image_text(*content))
                                   : std::move(content);
}

}  // namespace kelvane
