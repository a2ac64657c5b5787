#include "session/line_log.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr std::size_t longest_stretch = 512;
constexpr Clock_time longest_gap = std::chrono::milliseconds(100);
/// As many equal control codes are counted instead of named one by one.
constexpr std::size_t counted_from = 4;
/// Of a line that nothing ends, in characters.
constexpr std::size_t longest_line = 100;

constexpr std::array<std::string_view, 32> control_names = {
    "NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL", "BS",  "TAB", "LF",
    "VT",  "FF",  "CR",  "SO",  "SI",  "DLE", "DC1", "DC2", "DC3", "DC4", "NAK",
    "SYN", "ETB", "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US"};

constexpr unsigned char del = 0x7F;

bool prints(unsigned char byte) {
    return byte >= ' ' && byte < del;
}

std::string named(unsigned char byte) {
    const std::string name = byte < ' '    ? std::string(control_names.at(byte))
                             : byte == del ? "DEL"
                                           : decimal(byte);
    return "<" + name + ">";
}

/// What stands for `count` equal bytes.
std::string written(unsigned char byte, std::size_t count) {
    if (prints(byte)) {
        return std::string(count, static_cast<char>(byte));
    }
    if (count >= counted_from) {
        return named(byte) + " x " + decimal(static_cast<std::int64_t>(count)) + " ";
    }
    std::string text;
    for (; count > 0; --count) {
        text += named(byte) + (byte == '\n' && count > 1 ? "\n" : "");
    }
    return text;
}

/// The equal bytes from `at` up to `end` end a line: line feeds, or a carriage return beside none.
bool ends_line(std::string_view bytes, std::size_t at, std::size_t end) {
    const bool beside_lf =
        (at > 0 && bytes[at - 1] == '\n') || (end < bytes.size() && bytes[end] == '\n');
    return end - at < counted_from && (bytes[at] == '\n' || (bytes[at] == '\r' && !beside_lf));
}

std::string as_characters(std::string_view bytes) {
    std::string text;
    std::size_t line_start = 0;
    for (std::size_t at = 0, end = 0; at < bytes.size(); at = end) {
        end = std::min(bytes.find_first_not_of(bytes[at], at), bytes.size());
        const std::string next = written(static_cast<unsigned char>(bytes[at]), end - at);
        if (text.size() > line_start && text.size() - line_start + next.size() > longest_line) {
            text += '\n';
            line_start = text.size();
        }
        text += next;
        if (ends_line(bytes, at, end)) {
            text += '\n';
            line_start = text.size();
        }
    }
    return text;
}

std::string without_bit_7(std::string_view bytes) {
    std::string characters(bytes);
    for (char& byte : characters) {
        byte = static_cast<char>(byte & 0x7F);
    }
    return characters;
}

std::string as_hex(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::size_t bytes_a_line = 16;
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto value = static_cast<unsigned char>(bytes[at]);
        text += at == 0 ? "" : at % bytes_a_line == 0 ? "\n" : " ";
        text += {digits[value >> 4U], digits[value & 0xFU]};
    }
    return text;
}

/// "   12.345 > " of a stretch.
std::string line_head(const Line_log::Stretch& stretch, Clock_time start) {
    std::array<char, 32> head{};
    const std::chrono::duration<double> seconds = stretch.begin - start;
    const int length = std::snprintf(head.data(), head.size(), "%9.3f %c ", seconds.count(),
                                     stretch.direction == Line_direction::to_machine ? '>' : '<');
    return {head.data(), static_cast<std::size_t>(length)};
}

}  // namespace

void Line_log::add(Clock_time now, Line_direction direction, std::string_view bytes) {
    while (!bytes.empty()) {
        if (stretches_.empty() || stretches_.back().direction != direction ||
            now - last_ > longest_gap || stretches_.back().bytes.size() >= longest_stretch) {
            stretches_.push_back({now, direction, {}});
        }
        std::string& last = stretches_.back().bytes;
        const std::string_view taken = bytes.substr(0, longest_stretch - last.size());
        last += taken;
        size_ += taken.size();
        bytes.remove_prefix(taken.size());
        last_ = now;
        while (size_ > capacity) {
            drop_first();
        }
    }
}

void Line_log::clear() {
    while (!stretches_.empty()) {
        drop_first();
    }
}

void Line_log::drop_first() {
    size_ -= stretches_.front().bytes.size();
    stretches_.pop_front();
    ++gone_;
}

std::string readable_bytes(std::string_view bytes, Line_form form) {
    switch (form) {
        case Line_form::hex:
            return as_hex(bytes);
        case Line_form::seven_bits:
            return as_characters(without_bit_7(bytes));
        default:
            return as_characters(bytes);
    }
}

std::string stretch_text(const Line_log::Stretch& stretch, Clock_time start, Line_form form) {
    std::string text = line_head(stretch, start);
    const std::string indent = std::string(text.size() - 2, ' ') + text.substr(text.size() - 2);
    std::string rest = readable_bytes(stretch.bytes, form);
    if (rest.ends_with('\n')) {
        rest.pop_back();
    }
    for (const char c : rest) {
        text += c;
        text += c == '\n' ? indent : "";
    }
    return text;
}

std::string log_text(const Line_log& log, Clock_time start, Line_form form) {
    std::string text;
    for (const Line_log::Stretch& stretch : log.stretches()) {
        text += stretch_text(stretch, start, form) + '\n';
    }
    return text;
}

}  // namespace kelvane
