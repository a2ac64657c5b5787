#include "resequence/block.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/basic_text.h"
#include "resequence/engine.h"

namespace kelvane {

namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::int64_t greatest_number = 999'999'999'999'999;

/// Cuts `count` characters from the front of `text` and returns them.
std::string_view cut(std::string_view& text, std::size_t count) {
    const std::string_view front = text.substr(0, count);
    text.remove_prefix(front.size());
    return front;
}

std::string_view cut_block_delete(std::string_view& line) {
    if (line.empty() || line[0] != '/') {
        return {};
    }
    return cut(line, line.size() > 1 && is_digit(line[1]) ? 2 : 1);
}

bool is_o(char c) {
    return c == 'O' || c == 'o';
}

/// Length of the letter (or letters) at the front of `line` that an old number follows.
std::size_t letter_length(std::string_view line, const Resequence_options& options) {
    const std::string& own = options.n_character;
    if (!own.empty() && line.substr(0, own.size()) == own) {
        return own.size();
    }
    if (line.empty()) {
        return 0;
    }
    const char c = line[0];
    const bool is_letter = c == 'N' || c == 'n' || (options.o_same_as_n && is_o(c)) ||
                           (options.h_with_w && (c == 'H' || c == 'h'));
    return is_letter ? 1 : 0;
}

bool is_old_number(char c) {
    return is_digit(c) || c == '.' || c == ' ';
}

}  // namespace

Block split_block(std::string_view line, const Resequence_options& options) {
    Block block;
    block.prefix = cut_block_delete(line);
    block.letter = cut(line, letter_length(line, options));
    if (!block.letter.empty()) {
        const auto* const end = std::find_if_not(line.begin(), line.end(), is_old_number);
        block.old_number = cut(line, static_cast<std::size_t>(end - line.begin()));
        block.keeps_letter = options.o_same_as_n && is_o(block.letter[0]);
    }
    block.rest = line;
    return block;
}

std::optional<std::string_view> whole_value(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const std::size_t end = std::min(text.find_first_not_of(digits), text.size());
    std::string_view whole = text.substr(0, end);
    if (whole.empty()) {
        return std::nullopt;
    }
    if (end < text.size() && text[end] == '.') {
        const std::size_t after_zeros = text.find_first_not_of('0', end + 1);
        if (after_zeros != std::string_view::npos && is_digit(text[after_zeros])) {
            return std::nullopt;
        }
    }
    whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size()));
    return whole;
}

Block_numbers::Block_numbers(const Resequence_options& options)
    : options_(options), number_(options.start) {}

const std::string& Block_numbers::text() {
    std::array<char, 24> buffer{};
    const std::int64_t magnitude = number_ < 0 ? -number_ : number_;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude).ptr;
    text_.assign(buffer.data(), end);
    const auto pad = [this](std::size_t width) {
        if (text_.size() < width) {
            text_.insert(0, width - text_.size(), '0');
        }
    };
    if (options_.decimal_numbers) {
        pad(3);
        text_.insert(text_.size() - 3, 1, '.');
    }
    if (options_.leading_zeros) {
        const int width = std::clamp(options_.digits, 0, most_digits);
        pad(static_cast<std::size_t>(width) + (options_.decimal_numbers ? 1 : 0));
    }
    if (options_.add_space) {
        text_ += ' ';
    }
    return text_;
}

bool Block_numbers::advance() {
    const auto countable = [](std::int64_t n) {
        return n >= -greatest_number && n <= greatest_number;
    };
    if (!countable(options_.increment) || !countable(number_)) {
        return false;
    }
    number_ += options_.increment;
    if (options_.maximum != 0 && number_ > options_.maximum) {
        number_ = options_.start;
    }
    return countable(number_);
}

bool Bracket_comment::covers(std::string_view words) {
    open_ = open_ || (!words.empty() && words[0] == '[');
    const bool covered = open_;
    const std::size_t last = words.find_last_not_of(' ');
    if (last != std::string_view::npos && words[last] == ']') {
        open_ = false;
    }
    return covered;
}

bool moves_w(std::string_view words) {
    const std::size_t comment = std::min(words.find('('), words.size());
    const std::size_t comment_end = std::min(words.find(')', comment), words.size());
    return words.substr(0, comment).find('W') != std::string_view::npos ||
           words.substr(comment_end).find('W') != std::string_view::npos;
}

}  // namespace kelvane
