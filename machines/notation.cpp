#include "machines/notation.h"

#include <utility>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

std::string with_replaced(std::string_view text, std::string_view word, char character) {
    std::string result;
    std::size_t from = 0;
    for (std::size_t at = text.find(word); at != std::string_view::npos;
         at = text.find(word, from)) {
        result.append(text, from, at - from).push_back(character);
        from = at + word.size();
    }
    return result.append(text, from);
}

/// What stands before `from` is done and holds no "<" any more, so that a megabyte of groups takes
/// linear time.
Fault_or_ok replace_groups(std::string& text) {
    std::string done;
    bool closed_before = false;  // `done` holds a ">"
    std::size_t from = 0;
    for (std::size_t open = text.find('<'); open != std::string::npos;
         open = text.find('<', from)) {
        const std::string_view between = std::string_view(text).substr(from, open - from);
        closed_before = closed_before || between.find('>') != std::string_view::npos;
        done.append(between);
        from = open;
        if (closed_before) {
            return Fault::invalid_argument;
        }
        const std::size_t close = text.find('>', open);
        if (close == std::string::npos) {
            break;
        }
        const int code = whole_number(std::string_view(text).substr(open + 1, close - open - 1));
        if (code < 0 || code > 255) {
            return Fault::invalid_argument;
        }
        from = close;
        text[from] = static_cast<char>(code);
    }
    text = done.append(text, from);
    return std::nullopt;
}

}  // namespace

Fault_or_ok parsit(std::string_view text, Tape_code tape_code, std::string& result) {
    std::string characters = with_replaced(text, "LF", '\n');
    characters = with_replaced(characters, "CR", tape_code == Tape_code::eia ? '\n' : '\r');
    characters = with_replaced(characters, "ESC", '\x1b');
    characters = with_replaced(characters, "NUL", '\0');
    if (const Fault_or_ok fault = replace_groups(characters)) {
        return fault;
    }
    result = std::move(characters);
    return std::nullopt;
}

}  // namespace kelvane
