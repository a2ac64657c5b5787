#include "receive/received_text.h"

#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

constexpr std::size_t part_length = 100;  // bytes

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
    // Enough for lines of ordinary length; what shorter ones need beyond that, the text grows by.
    text_.reserve(raw.size() + raw.size() / 8);
}

void Received_text::take(std::size_t count) {
    std::string_view left = raw_.substr(taken_, count);
    taken_ += left.size();
    while (!left.empty()) {
        take_part(left.substr(0, part_length));
        left.remove_prefix(std::min(left.size(), part_length));
    }
}

/// Through a small buffer, so that the text needs no filling before it is written. Nothing depends
/// on whether a byte is kept but where the next one goes.
void Received_text::take_part(std::string_view part) {
    std::array<char, 2 * part_length> buffer;  // NOLINT(*-member-init): filled as far as it is read
    char* out = buffer.data();
    for (const char byte : part) {
        const std::int16_t action = actions_[static_cast<unsigned char>(byte)];
        if (action == ends_block) {
            out = end_line(buffer.data(), out);
        } else {
            *out = static_cast<char>(action);
            out += action >= 0 ? 1 : 0;
        }
    }
    text_.append(buffer.data(), out);
}

/// Of the line that ends at `out` in a buffer behind the text; where the next one begins.
char* Received_text::end_line(char* buffer, char* out) {
    if (std::exchange(drops_next_, false)) {
        text_.clear();
        return buffer;
    }
    *out++ = '\r';
    *out++ = '\n';
    line_start_ = text_.size() + static_cast<std::size_t>(out - buffer);
    return out;
}

std::string Received_text::finish() {
    if (drops_unfinished_) {
        text_.resize(line_start_);
    }
    return std::move(text_);
}

std::string_view skipped_up_to(std::string_view text, std::string_view mark) {
    const std::size_t at = mark.empty() ? std::string_view::npos : text.find(mark);
    return at == std::string_view::npos ? text : text.substr(at + mark.size());
}

}  // namespace kelvane
