#include "platform/basic_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/lines.h"

namespace kelvane {

namespace {

constexpr std::size_t longest_number = 300;

template <typename Change>
std::string changed_letters(std::string_view text, Change change) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), change);
    return result;
}

}  // namespace

double Val(std::string_view text) {
    std::size_t at = text.find_first_not_of(' ');
    if (at == std::string_view::npos) {
        return 0;
    }
    text = text.substr(at, longest_number);
    at = 0;
    bool negative = false;
    if (text[0] == '-' || text[0] == '+') {
        negative = text[0] == '-';
        at = 1;
    }
    double value = 0;
    double place = 0;  // 0 before the decimal point, then the weight of the next digit
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '.' && place == 0) {
            place = 0.1;
        } else if (!is_digit(c)) {
            break;
        } else if (place == 0) {
            value = value * 10 + (c - '0');
        } else {
            value += place * (c - '0');
            place /= 10;
        }
    }
    return negative ? -value : value;
}

std::string Str(std::int64_t number) {
    return number < 0 ? std::to_string(number) : " " + std::to_string(number);
}

std::string print_number(std::int64_t number) {
    return Str(number) + " ";
}

std::string decimal(std::int64_t number) {
    return std::to_string(number);
}

std::string grouped_decimal(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, ",");
    }
    return text;
}

int CInt(double number) {
    if (std::isnan(number)) {
        return 0;
    }
    const double lowest = std::numeric_limits<int>::min();
    const double highest = std::numeric_limits<int>::max();
    const double clamped = std::clamp(number, lowest, highest);
    const double below = std::floor(clamped);
    const double over = clamped - below;
    const bool odd = std::fmod(below, 2) != 0;
    const double rounded = over > 0.5 || (over == 0.5 && odd) ? below + 1 : below;
    return static_cast<int>(rounded);
}

int whole_number(std::string_view text) {
    return CInt(Val(text));
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool is_letter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string upper_case(std::string_view text) {
    return changed_letters(
        text, [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
}

std::string lower_case(std::string_view text) {
    return changed_letters(
        text, [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
}

Text_reader::Text_reader(Result<std::string> content)
    : content_(content ? std::move(*content) : std::string()), failed_(!content.has_value()) {}

bool Text_reader::line(std::string& target) {
    if (at_end()) {
        failed_ = true;
        return false;
    }
    Lines lines(content_, position_);
    target = lines.take();
    position_ = lines.position();
    return true;
}

bool Text_reader::field(std::string& target) {
    return take_field(target, false);
}

bool Text_reader::text_field(std::string& target) {
    return take_field(target, true);
}

bool Text_reader::take_field(std::string& target, bool blanks_count) {
    if (at_end()) {
        failed_ = true;
        return false;
    }
    std::string_view rest = std::string_view(content_).substr(position_);
    rest = rest.substr(0, rest.find_first_of(cr_lf));
    if (!blanks_count) {
        rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    }
    const std::size_t quote = rest.starts_with('"') ? rest.find('"', 1) : std::string_view::npos;
    const bool quoted = quote != std::string_view::npos;
    const std::size_t end = std::min(rest.find(',', quoted ? quote : 0), rest.size());
    target = quoted ? rest.substr(1, quote - 1) : rest.substr(0, end);
    if (!quoted && !blanks_count) {
        target.erase(target.find_last_not_of(' ') + 1);
    }
    position_ = static_cast<std::size_t>(rest.data() - content_.data()) + end;
    skip_separator();
    return true;
}

/// Past the comma or line end that ends a field.
void Text_reader::skip_separator() {
    if (!at_end()) {
        position_ += std::max<std::size_t>(line_end_length(content_, position_), 1);
    }
}

bool Text_reader::line_number(int& target) {
    std::string text;
    if (!line(text)) {
        return false;
    }
    target = whole_number(text);
    return true;
}

bool Text_reader::field_number(int& target) {
    std::string text;
    if (!field(text)) {
        return false;
    }
    target = whole_number(text);
    return true;
}

bool Text_reader::field_flag(bool& target) {
    std::string text;
    if (!field(text)) {
        return false;
    }
    const std::string word = upper_case(text);
    target = word == "TRUE" || word == "#TRUE#" || whole_number(text) != 0;
    return true;
}

Text_writer& Text_writer::line(std::string_view text) {
    text_ += text;
    text_ += cr_lf;
    return *this;
}

Text_writer& Text_writer::number_line(std::int64_t number) {
    return line(print_number(number));
}

}  // namespace kelvane
