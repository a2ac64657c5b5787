#include "resequence/goto_table.h"

#include <algorithm>

#include "resequence/block.h"

namespace kelvane {

std::optional<Goto_target> find_goto(std::string_view text, std::size_t from) {
    constexpr std::string_view word = "GOTO";
    const std::size_t found = text.find(word, from);
    if (found == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t start = found + word.size();
    const std::size_t end = std::min(text.find_first_not_of("0123456789 ", start), text.size());
    return Goto_target{start, text.substr(start, end - start)};
}

bool Goto_table::add(std::string_view target) {
    const std::string_view value = whole_value(target).value_or(std::string_view());
    if (numbers_.contains(value)) {
        return true;
    }
    if (numbers_.size() == capacity) {
        return false;
    }
    numbers_.try_emplace(value);
    return true;
}

bool Goto_table::renumbered(std::string_view old_number, const std::string& new_number) {
    const auto value = whole_value(old_number);
    const auto found = value ? numbers_.find(*value) : numbers_.end();
    if (found == numbers_.end()) {
        return false;
    }
    found->second = new_number;
    return true;
}

std::optional<std::string> Goto_table::replacement(std::string_view target) const {
    const auto value = whole_value(target);
    const auto found = value ? numbers_.find(*value) : numbers_.end();
    if (found == numbers_.end() || found->second.empty()) {
        return std::nullopt;
    }
    std::string text = target.front() == ' ' ? " " : "";
    text += found->second;
    if (target.back() == ' ' && text.back() != ' ') {
        text += ' ';
    }
    return text;
}

}  // namespace kelvane
