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

std::string as_characters(std::string_view bytes) {
    std::string text;
    for (std::size_t at = 0, end = 0; at < bytes.size(); at = end) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        end = std::min(bytes.find_first_not_of(bytes[at], at), bytes.size());
        if (prints(byte)) {
            text.append(end - at, bytes[at]);
        } else if (end - at >= counted_from) {
            text += named(byte) + " x " + decimal(static_cast<std::int64_t>(end - at)) + " ";
        } else {
            for (; at < end; ++at) {
                text += named(byte) + (byte == '\n' ? "\n" : "");
            }
        }
    }
    return text;
}

std::string as_hex(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += text.empty() ? "" : " ";
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
    return form == Line_form::hex ? as_hex(bytes) : as_characters(bytes);
}

std::string log_text(const Line_log& log, Clock_time start, Line_form form) {
    std::string text;
    for (const Line_log::Stretch& stretch : log.stretches()) {
        const std::string head = line_head(stretch, start);
        std::string rest = readable_bytes(stretch.bytes, form);
        if (rest.ends_with('\n')) {
            rest.pop_back();
        }
        // The time stands at the first line, the sign at each.
        const std::string indent = std::string(head.size() - 2, ' ') + head.substr(head.size() - 2);
        text += head;
        for (const char c : rest) {
            text += c;
            text += c == '\n' ? indent : "";
        }
        text += '\n';
    }
    return text;
}

}  // namespace kelvane
