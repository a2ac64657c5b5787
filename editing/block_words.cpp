#include "editing/block_words.h"

#include <algorithm>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr std::string_view blanks = " \t";

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool is_sign(char c) {
    return c == '+' || c == '-';
}

Word_kind kind_of(char letter) {
    switch (letter) {
        case 'N':
            return Word_kind::block_number;
        case 'O':
        case ':':
            return Word_kind::program_number;
        case 'G':
            return Word_kind::g_code;
        case 'M':
            return Word_kind::m_code;
        case 'T':
            return Word_kind::tool;
        default:
            return std::string_view("ABCUVWXYZ").find(letter) != std::string_view::npos
                       ? Word_kind::axis
                       : Word_kind::other;
    }
}

/// Of the system variables those that hold offsets have four or five digits; between them stand
/// signals, messages and what can only be read.
bool is_offset_variable(std::string_view number) {
    const double value = Val(number);
    return (value >= 2000 && value < 3000) || value >= 5000;
}

}  // namespace

bool is_control(char c) {
    return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F;
}

char Block_reader::at(std::size_t place) const {
    return place < line_.size() ? line_[place] : '\0';
}

void Block_reader::skip_blanks() {
    place_ = std::min(line_.find_first_not_of(blanks, place_), line_.size());
}

/// On to `behind` bytes after the first of `ends`, or to the end of the line.
void Block_reader::run_to(std::string_view ends, std::size_t behind) {
    const std::size_t found = line_.find_first_of(ends, place_);
    place_ = found == std::string_view::npos ? line_.size() : found + behind;
}

/// Over a bracket with all brackets in it, or a variable: "[#1+[2]]", "#24", "##1".
void Block_reader::read_expression() {
    while (at(place_) == '#') {
        ++place_;
    }
    if (at(place_) != '[') {
        while (is_digit(at(place_))) {
            ++place_;
        }
        return;
    }
    int depth = 0;
    do {
        depth += at(place_) == '[' ? 1 : at(place_) == ']' ? -1 : 0;
        ++place_;
    } while (depth > 0 && place_ < line_.size());
}

void Block_reader::read_value(Block_word& word) {
    const std::size_t behind_letter = place_;
    skip_blanks();
    if (at(place_) == '=') {
        ++place_;
        skip_blanks();
    }
    const std::size_t begin = place_;
    place_ += is_sign(at(place_)) ? 1 : 0;
    if (at(place_) == '#' || at(place_) == '[') {
        word.computed = true;
        read_expression();
        return;
    }
    const std::size_t digits = place_;
    while (is_digit(at(place_)) || at(place_) == '.') {
        ++place_;
    }
    if (place_ == digits) {
        place_ = behind_letter;  // no value: what stands there is a word of its own
        return;
    }
    word.number = line_.substr(begin, place_ - begin);
}

void Block_reader::read_digits(Block_word& word) {
    const std::size_t end = line_.find_first_not_of("0123456789", place_);
    word.number = line_.substr(place_, std::min(end, line_.size()) - place_);
}

void Block_reader::read_letters(Block_word& word) {
    std::size_t end = place_;
    while (is_letter(at(end)) || at(end) == '_') {
        ++end;
    }
    word.name = line_.substr(place_, end - place_);
    word.kind = Word_kind::statement;
    place_ = end;
    const std::string name = upper_case(word.name);
    if (name == "CALL") {
        run_to("(;", 0);
    } else if (name != "THEN") {  // an assignment follows it
        read_value(word);
    }
}

void Block_reader::read_address(Block_word& word) {
    word.letter = upper(line_[place_]);
    word.kind = kind_of(word.letter);
    ++place_;
    read_value(word);
}

/// A word that begins with neither a letter nor a control character.
void Block_reader::read_mark(Block_word& word) {
    const std::size_t begin = place_;
    const char c = line_[place_++];
    switch (c) {
        case '(':
            word.kind = Word_kind::comment;
            run_to(")", 1);
            break;
        case ';':
            word.kind = Word_kind::comment;
            place_ = line_.size();
            break;
        case '/':
            word.kind = Word_kind::block_skip;
            place_ += is_digit(at(place_)) ? 1 : 0;
            break;
        case '%':
            word.kind =
                line_.find_first_not_of(blanks) == begin ? Word_kind::tape_mark : Word_kind::unread;
            place_ = line_.size();
            break;
        case '#':
            word.kind = Word_kind::expression;
            read_digits(word);
            run_to("(;", 0);
            break;
        case '[':
            word.kind = Word_kind::expression;
            --place_;
            read_expression();
            break;
        case ',':
            if (is_letter(at(place_))) {
                word.kind = Word_kind::other;
                ++place_;
            }
            read_value(word);
            break;
        case '"':
            run_to("\"", 1);
            break;
        default:
            while (is_digit(c) && is_digit(at(place_))) {
                ++place_;
            }
            break;
    }
}

bool Block_reader::next(Block_word& word) {
    skip_blanks();
    if (place_ == line_.size()) {
        return false;
    }
    word = {};
    word.begin = place_;
    const char c = line_[place_];
    if (is_control(c)) {
        word.kind = Word_kind::controls;
        const auto* const end =
            std::find_if_not(line_.begin() + static_cast<std::ptrdiff_t>(place_), line_.end(),
                             [](char byte) { return is_control(byte); });
        place_ = static_cast<std::size_t>(end - line_.begin());
    } else if (is_letter(c) && is_letter(at(place_ + 1))) {
        read_letters(word);
    } else if (is_letter(c) || c == ':') {
        read_address(word);
    } else {
        read_mark(word);
    }
    word.length = place_ - word.begin;
    return true;
}

Block_words::Block_words(std::string_view line) {
    Block_reader reader(line);
    Block_word word;
    while (reader.next(word)) {
        switch (word.kind) {
            case Word_kind::comment:
            case Word_kind::controls:
            case Word_kind::tape_mark:
                continue;
            case Word_kind::block_skip:
                skip = true;
                continue;
            case Word_kind::block_number:
                if (!word.number.empty()) {
                    number = word.number;
                    continue;
                }
                unread = true;
                break;
            case Word_kind::program_number:
                if (!any) {
                    program_number = word;
                }
                break;
            case Word_kind::g_code:
                g.push_back(word);
                break;
            case Word_kind::m_code:
                m.push_back(word);
                break;
            case Word_kind::statement:
                statements.push_back(word);
                break;
            case Word_kind::expression:
                variable = true;
                sets_offset = sets_offset || is_offset_variable(word.number);
                break;
            case Word_kind::unread:
                unread = true;
                break;
            default:
                others.push_back(word);
        }
        variable = variable || word.computed;
        any = true;
    }
}

const Block_word* Block_words::operator[](char letter) const {
    const auto found = std::find_if(others.rbegin(), others.rend(),
                                    [letter](const Block_word& w) { return w.letter == letter; });
    return found == others.rend() ? nullptr : &*found;
}

bool Block_words::has_axes() const {
    return std::any_of(others.begin(), others.end(),
                       [](const Block_word& w) { return w.kind == Word_kind::axis; });
}

std::string word_text(const Block_word& word) {
    std::string text(1, word.letter);
    return text.append(word.computed ? std::string_view("#") : word.number);
}

std::optional<std::string_view> block_number(std::string_view line) {
    Block_reader reader(line);
    Block_word word;
    while (reader.next(word) &&
           (word.kind == Word_kind::block_skip || word.kind == Word_kind::controls)) {
    }
    const bool is_number = word.kind == Word_kind::block_number && !word.number.empty();
    return is_number ? std::optional(word.number) : std::nullopt;
}

bool is_given_as_zero(const Block_word* word) {
    return word != nullptr && !word->computed &&
           word->number.find_first_of("123456789") == std::string_view::npos;
}

std::string_view essential_number(std::string_view number) {
    if (number.find('.') != std::string_view::npos) {
        number = number.substr(0, number.find_last_not_of('0') + 1);
        number.remove_suffix(number.ends_with('.') ? 1 : 0);
    }
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

bool same_number(std::string_view one, std::string_view other) {
    return essential_number(one) == essential_number(other);
}

}  // namespace kelvane
