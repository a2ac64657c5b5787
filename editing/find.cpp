#include "editing/find.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

bool is_word_letter(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return is_letter(c) || c == '_' || byte >= 0x80;
}

bool is_number_part(char c) {
    return is_digit(c) || c == '.';
}

/// True when two neighbours belong to one word: "X1", "12", "AB", "1.5", but not "1X".
bool are_joined(char left, char right) {
    return (is_word_letter(left) && (is_word_letter(right) || is_digit(right))) ||
           (is_number_part(left) && is_number_part(right));
}

}  // namespace

Text_matcher::Text_matcher(std::string_view wanted, const Find_options& options,
                           Text_encoding encoding)
    : options_(options), encoding_(encoding) {
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        wanted_ += folded(wanted, i);
    }
    if (options.backwards) {
        std::reverse(wanted_.begin(), wanted_.end());
    }
    fall_back_.assign(wanted_.size() + 1, 0);
    for (std::size_t i = 1, same = 0; i < wanted_.size(); ++i) {
        while (same > 0 && wanted_[i] != wanted_[same]) {
            same = fall_back_[same];
        }
        same += wanted_[i] == wanted_[same] ? 1 : 0;
        fall_back_[i + 1] = same;
    }
}

/// The byte at `at`, capitals as small letters where case does not count.
char Text_matcher::folded(std::string_view text, std::size_t at) const {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (options_.case_sensitive) {
        return text[at];
    }
    bool capital = byte >= 'A' && byte <= 'Z';
    if (encoding_ == Text_encoding::latin1) {
        capital = capital || (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7);
    } else {
        capital = capital || (byte >= 0x80 && byte <= 0x9E && byte != 0x97 && at > 0 &&
                              text[at - 1] == '\xC3');
    }
    return static_cast<char>(byte + (capital ? 0x20 : 0));
}

bool Text_matcher::is_whole(std::string_view text, std::size_t begin) const {
    const std::size_t end = begin + length();
    return (begin == 0 || !are_joined(text[begin - 1], text[begin])) &&
           (end == text.size() || !are_joined(text[end - 1], text[end]));
}

bool Text_matcher::feed(std::string_view text, std::size_t at) {
    const char byte = folded(text, at);
    while (matched_ > 0 && wanted_[matched_] != byte) {
        matched_ = fall_back_[matched_];
    }
    matched_ += wanted_[matched_] == byte ? 1 : 0;
    if (matched_ < length()) {
        return false;
    }
    matched_ = fall_back_[matched_];
    return !options_.whole_word || is_whole(text, options_.backwards ? at : at + 1 - length());
}

Find::Find(std::string_view wanted, const Find_options& options, Text_encoding encoding,
           std::size_t from)
    : matcher_(wanted, options, encoding), backwards_(options.backwards), from_(from) {}

/// Bytes of this pass that have not been looked at: to the end, then from the other end as far as a
/// match that the first pass cut in two.
std::size_t Find::bytes_left(std::size_t size) const {
    const std::size_t ahead = backwards_ ? from_ : size - from_;
    const std::size_t pass =
        wrapped_ ? std::min(size, size - ahead + matcher_.length() - 1) : ahead;
    return pass - passed_;
}

Search_state Find::step(std::string_view text, std::size_t budget) {
    if (matcher_.length() == 0) {
        return Search_state::not_found;
    }
    from_ = std::min(from_, text.size());
    const std::size_t start = wrapped_ ? (backwards_ ? text.size() : 0) : from_;
    for (std::size_t left = std::min(budget, bytes_left(text.size())); left > 0; --left) {
        const std::size_t at = backwards_ ? start - passed_ - 1 : start + passed_;
        ++passed_;
        if (matcher_.feed(text, at)) {
            found_at_ = backwards_ ? at : at + 1 - matcher_.length();
            return Search_state::found;
        }
    }
    if (bytes_left(text.size()) > 0) {
        return Search_state::running;
    }
    if (wrapped_) {
        return Search_state::not_found;
    }
    wrapped_ = true;
    passed_ = 0;
    matcher_.restart();
    return budget == std::string_view::npos ? step(text, budget) : Search_state::running;
}

Replace_all::Replace_all(std::string_view wanted, std::string replacement, Find_options options,
                         Text_encoding encoding, std::size_t max_size)
    : matcher_(wanted, (options.backwards = false, options), encoding),
      replacement_(std::move(replacement)),
      max_size_(max_size) {}

void Replace_all::take_match(std::string_view text, std::size_t begin) {
    if (result_.count++ == 0) {
        result_.at = begin;
    } else {
        result_.added += text.substr(end_of_match_, begin - end_of_match_);
    }
    result_.added += replacement_;
    end_of_match_ = begin + matcher_.length();
    result_.removed = end_of_match_ - result_.at;
    matcher_.restart();
}

Search_state Replace_all::step(std::string_view text, std::size_t budget) {
    if (matcher_.length() == 0) {
        return Search_state::not_found;
    }
    for (; budget > 0 && place_ < text.size() && !too_long_; --budget, ++place_) {
        if (matcher_.feed(text, place_)) {
            take_match(text, place_ + 1 - matcher_.length());
            too_long_ = text.size() - result_.removed + result_.added.size() > max_size_;
        }
    }
    if (place_ < text.size() && !too_long_) {
        return Search_state::running;
    }
    return result_.count > 0 && !too_long_ ? Search_state::found : Search_state::not_found;
}

}  // namespace kelvane
