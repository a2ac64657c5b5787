#include "editing/go_to.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "editing/block_words.h"
#include "platform/basic_text.h"
#include "platform/lines.h"

namespace kelvane {

std::optional<Go_to> parse_go_to(std::string_view text) {
    text = trimmed(text);
    if (const auto number = block_number(text)) {
        const bool whole = is_digit(number->front()) || number->front() == '.';
        const bool alone = text.ends_with(*number);
        return whole && alone ? std::optional(Go_to{0, std::string(*number)}) : std::nullopt;
    }
    std::size_t line = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), line);
    const bool is_line = end == text.data() + text.size() && !text.empty() && line > 0;
    // A number too great to count is behind the last line, too.
    return is_line || error == std::errc::result_out_of_range
               ? std::optional(Go_to{error == std::errc() ? line - 1 : std::size_t(-1), {}})
               : std::nullopt;
}

Find_block::Find_block(std::string number, std::size_t from, std::size_t from_line)
    : number_(std::move(number)), from_(from), place_(from), line_(from_line) {}

Search_state Find_block::step(std::string_view text, std::size_t budget) {
    const std::size_t stop = budget > text.size() ? std::string_view::npos : place_ + budget;
    while (place_ <= stop) {
        if (wrapped_ && place_ > from_) {
            return Search_state::not_found;
        }
        Lines lines(text, std::min(place_, text.size()));
        const auto number = block_number(lines.take());
        if (number && past_first_ && same_number(*number, number_)) {
            return Search_state::found;
        }
        past_first_ = true;
        ++line_;
        if (lines.at_end() && !wrapped_) {
            wrapped_ = true;
            place_ = line_ = 0;
            return budget > text.size() ? step(text, budget) : Search_state::running;
        }
        if (lines.at_end()) {
            return Search_state::not_found;
        }
        place_ = lines.position();
    }
    return Search_state::running;
}

}  // namespace kelvane
