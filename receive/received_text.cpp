#include "receive/received_text.h"

#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

bool holds(std::string_view characters, int character) {
    return characters.find(static_cast<char>(character)) != std::string_view::npos;
}

}  // namespace

Received_text::Received_text(std::string_view raw, const Code_tables& tables,
                             const Received_code& code, const Conversion_options& options)
    : raw_(raw), drops_next_(options.ignore_before), drops_unfinished_(options.ignore_after) {
    for (std::size_t byte = 0; byte < actions_.size(); ++byte) {
        const std::int16_t character =
            tables.reverse_code_table[byte][static_cast<std::size_t>(code.column)];
        const bool drops =
            holds(options.unwanted, static_cast<int>(byte)) || holds(options.mask, character);
        actions_[byte] = drops ? dropped : character;
    }
    actions_[code.end_of_block] = ends_block;
    const auto blocks = std::count(raw.begin(), raw.end(), static_cast<char>(code.end_of_block));
    text_.resize(raw.size() + 2 * static_cast<std::size_t>(blocks));
}

void Received_text::take(std::size_t count) {
    const std::string_view part = raw_.substr(taken_, count);
    taken_ += part.size();
    char* out = text_.data() + end_;
    for (const char byte : part) {
        const std::int16_t action = actions_[static_cast<unsigned char>(byte)];
        if (action >= 0) {
            *out++ = static_cast<char>(action);
        } else if (action == ends_block) {
            out = end_line(out);
        }
    }
    end_ = static_cast<std::size_t>(out - text_.data());
}

char* Received_text::end_line(char* out) {
    if (std::exchange(drops_next_, false)) {
        return text_.data() + line_start_;
    }
    *out++ = '\r';
    *out++ = '\n';
    line_start_ = static_cast<std::size_t>(out - text_.data());
    return out;
}

std::string Received_text::finish() {
    text_.resize(drops_unfinished_ ? line_start_ : end_);
    return std::move(text_);
}

std::string_view skipped_up_to(std::string_view text, std::string_view mark) {
    const std::size_t at = mark.empty() ? std::string_view::npos : text.find(mark);
    return at == std::string_view::npos ? text : text.substr(at + mark.size());
}

}  // namespace kelvane
