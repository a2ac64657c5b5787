#include "transmit/sub_call.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view call_word = "CALL ";
constexpr std::string_view times_word = "TIMES";

void skip_blanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string_view take_digits(std::string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(), is_digit);
    const auto digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    return digits;
}

void skip_slash(std::string_view& text) {
    skip_blanks(text);
    if (text.starts_with('/')) {
        text.remove_prefix(1);
        take_digits(text);  // "/2": one of several block-skip switches
        skip_blanks(text);
    }
}

void skip_block_number(std::string_view& text) {
    std::string_view rest = text;
    if (rest.starts_with('N')) {
        rest.remove_prefix(1);
        skip_blanks(rest);
        if (!take_digits(rest).empty()) {
            text = rest;
        }
    }
}

int repeat_count(std::string_view digits) {
    int count = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    return whole && count >= 1 && count <= max_sub_repeats ? count : 0;
}

/// The count in a bracket that holds the word TIMES, 0 for one that cannot be read; no value
/// without that word: the bracket is a comment.
std::optional<int> times_in(std::string_view bracket) {
    const std::string text = upper_case(bracket);
    const std::string_view view = text;
    const std::size_t at = view.find(times_word);
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view before = view.substr(0, at);
    const std::string_view after = view.substr(at + times_word.size());
    if ((!before.empty() && is_letter(before.back())) ||
        (!after.empty() && is_letter(after.front()))) {
        return std::nullopt;
    }
    const std::string_view left = trimmed(before);
    const std::string_view right = trimmed(after);
    if (left.empty() == right.empty()) {
        return 0;
    }
    return repeat_count(left.empty() ? right : left);
}

/// Takes the brackets off the end of `rest`: comments behind a blank, and the repeat count, which
/// needs none ("SUB.NC(3 TIMES)"). "PART(1)" keeps its bracket.
int take_brackets(std::string_view& rest) {
    std::optional<int> repeats;
    while (rest.ends_with(')')) {
        const std::size_t open = rest.rfind('(');
        if (open == std::string_view::npos) {
            break;
        }
        const auto times = times_in(rest.substr(open + 1, rest.size() - open - 2));
        if (!times && open > 0 && blanks.find(rest[open - 1]) == std::string_view::npos) {
            break;
        }
        if (times) {
            repeats = repeats ? 0 : *times;
        }
        rest = trimmed(rest.substr(0, open));
    }
    return repeats.value_or(1);
}

bool is_statement_of_a_control(std::string_view name) {
    static constexpr std::array<std::string_view, 2> words = {"LBL ", "PGM "};
    return std::any_of(words.begin(), words.end(),
                       [name](std::string_view word) { return name.starts_with(word); });
}

bool is_program_end(std::string_view digits) {
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits == "2" || digits == "30";
}

bool holds_program_end(std::string_view line) {
    int depth = 0;
    char previous = ' ';
    while (!line.empty()) {
        const char c = line.front();
        line.remove_prefix(1);
        depth += c == '(' ? 1 : 0;
        depth -= c == ')' && depth > 0 ? 1 : 0;
        if (depth == 0 && (c == 'M' || c == 'm') && !is_letter(previous)) {
            skip_blanks(line);
            const bool ends = is_program_end(take_digits(line));
            if (ends && !line.starts_with('.')) {
                return true;
            }
        }
        previous = c;
    }
    return false;
}

}  // namespace

std::optional<Sub_call> parse_sub_call(std::string_view line) {
    skip_slash(line);
    skip_block_number(line);
    skip_slash(line);
    if (!line.starts_with(call_word)) {
        return std::nullopt;
    }
    std::string_view name = trimmed(line.substr(call_word.size()));
    const int repeats = take_brackets(name);
    if (name.size() >= 2 && name.front() == '"' && name.back() == '"') {
        name = trimmed(name.substr(1, name.size() - 2));
    } else if (is_statement_of_a_control(name)) {
        return std::nullopt;
    }
    if (name.empty()) {
        return std::nullopt;
    }
    return Sub_call{std::string(name), repeats};
}

bool left_out_of_sub_file(std::string_view line) {
    return trimmed(line) == "%" || holds_program_end(line);
}

}  // namespace kelvane
