#include "session/line_trouble.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

std::string counted(int number, std::string_view thing) {
    return grouped_decimal(static_cast<std::size_t>(number)) + " " + std::string(thing) +
           (number == 1 ? "" : "s");
}

/// "212 of 3,400 characters came with framing errors"
std::string damaged(int count, std::size_t characters, std::string_view kind) {
    const auto number = static_cast<std::size_t>(count);
    const std::string share =
        number <= characters
            ? grouped_decimal(number) + " of " + counted(static_cast<int>(characters), "character")
            : counted(count, "character");
    return share + (count == 1 ? " came with a " : " came with ") + std::string(kind) +
           (count == 1 ? " error" : " errors");
}

void add_sentence(std::string& text, const std::string& sentence) {
    text += (text.empty() ? "" : "\n") + sentence;
}

/// The machine sends at a higher rate than is read, so several of its characters seem to be one.
bool too_few(const Unknown_reception& reception) {
    constexpr auto long_enough = std::chrono::seconds(2);
    constexpr double share = 0.25;
    const double possible =
        std::chrono::duration<double>(reception.span).count() * reception.characters_per_second;
    return reception.span >= long_enough &&
           static_cast<double>(reception.bytes.size()) < possible * share;
}

}  // namespace

// At a wrong baud rate characters fail in every way at once; what fails most says why.
std::string line_errors_text(const Line_errors& errors, std::size_t characters) {
    std::string text;
    if (errors.framing > 0 && errors.framing >= errors.parity) {
        add_sentence(text,
                     damaged(errors.framing, characters, "framing") + ": the baud rate is wrong");
    } else if (errors.parity > 0) {
        add_sentence(text,
                     damaged(errors.parity, characters, "parity") + ": data bits or parity differ");
    } else if (errors.breaks > 0) {
        add_sentence(text, "The line was held low " + counted(errors.breaks, "time") +
                               ": a plug is loose, the machine was switched, or it sends far "
                               "slower than the baud rate set here");
    }
    if (errors.overrun > 0) {
        add_sentence(text, "The computer was too slow: " + counted(errors.overrun, "character") +
                               " lost. Use a handshake, a lower baud rate, or end other programs");
    }
    return text;
}

std::string likeliest_cause(const Unknown_reception& reception) {
    const std::string_view bytes = reception.bytes;
    const auto all = [&](auto holds) { return std::all_of(bytes.begin(), bytes.end(), holds); };
    if (std::string text = line_errors_text(reception.errors, bytes.size()); !text.empty()) {
        return text;
    }
    if (bytes.empty()) {
        return "No character came: the machine did not send, or its sending wire does not reach "
               "pin 2 of a 9-pin plug";
    }
    if (all([](char byte) { return byte == '\0'; })) {
        return std::string(only_nulls);
    }
    if (all([](char byte) { return (byte & 0x80) != 0; })) {
        return "Every character came with bit 7 set: set 7 data bits, or the two wires of the line "
               "are inverted";
    }
    if (too_few(reception)) {
        return "Few characters came for the time: the machine's baud rate is higher than the one "
               "set here";
    }
    return "The characters make no text in any tape code: compare baud rate, data bits and tape "
           "code with the machine's";
}

}  // namespace kelvane
