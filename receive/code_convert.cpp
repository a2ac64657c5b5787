#include "receive/code_convert.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kelvane {

namespace {

constexpr std::size_t leader_run = 50;
constexpr char eia_end_of_block = '\x80';
constexpr std::size_t yield_every = 100;

bool is_line_end_in_any_parity(char byte) {
    const char bare = static_cast<char>(byte & 0x7F);
    return bare == '\n' || bare == '\r';
}

/// What becomes of each raw byte: a character, or one of these.
constexpr std::int16_t dropped = -1;
constexpr std::int16_t ends_block = -2;
using Actions = std::array<std::int16_t, 256>;

bool holds(std::string_view characters, int character) {
    return characters.find(static_cast<char>(character)) != std::string_view::npos;
}

Actions actions_for(const Code_tables& tables, const Received_code& code,
                    const Conversion_options& options) {
    Actions actions{};
    for (std::size_t raw = 0; raw < actions.size(); ++raw) {
        const std::int16_t character =
            tables.reverse_code_table[raw][static_cast<std::size_t>(code.column)];
        const bool drops =
            holds(options.unwanted, static_cast<int>(raw)) || holds(options.mask, character);
        actions[raw] = drops ? dropped : character;
    }
    actions[code.end_of_block] = ends_block;
    return actions;
}

/// Text under construction in storage of the largest size it can take.
class Lines {
  public:
    Lines(std::size_t raw_size, std::size_t blocks, bool drops_first)
        : text_(raw_size + 2 * blocks, '\0'), drops_next_(drops_first) {}

    void take(std::string_view raw, const Actions& actions) {
        char* out = text_.data() + end_;
        for (const char byte : raw) {
            const std::int16_t action = actions[static_cast<unsigned char>(byte)];
            if (action >= 0) {
                *out++ = static_cast<char>(action);
            } else if (action == ends_block) {
                out = end_line(out);
            }
        }
        end_ = static_cast<std::size_t>(out - text_.data());
    }

    std::string finish(bool drops_unfinished) {
        text_.resize(drops_unfinished ? line_start_ : end_);
        return std::move(text_);
    }

  private:
    char* end_line(char* out) {
        if (drops_next_) {
            drops_next_ = false;
            return text_.data() + line_start_;
        }
        *out++ = '\r';
        *out++ = '\n';
        line_start_ = static_cast<std::size_t>(out - text_.data());
        return out;
    }

    std::string text_;
    std::size_t end_ = 0;
    std::size_t line_start_ = 0;
    bool drops_next_;
};

}  // namespace

std::optional<Received_code> recognise_code(std::string_view sample) {
    sample = sample.substr(0, recognition_sample);
    const std::string leader(leader_run, eia_end_of_block);
    const bool has_leader = sample.find(leader) != std::string_view::npos;
    for (const char byte : sample) {
        if (is_line_end_in_any_parity(byte)) {
            return Received_code{receive_ascii, static_cast<unsigned char>(byte)};
        }
        if (byte == eia_end_of_block && !has_leader) {
            return Received_code{receive_eia, static_cast<unsigned char>(byte)};
        }
    }
    return std::nullopt;
}

std::string convert_received(std::string_view raw, const Code_tables& tables,
                             const Received_code& code, const Conversion_options& options,
                             const std::function<void()>& yield) {
    const Actions actions = actions_for(tables, code, options);
    const auto blocks = std::count(raw.begin(), raw.end(), static_cast<char>(code.end_of_block));
    Lines lines(raw.size(), static_cast<std::size_t>(blocks), options.ignore_before);
    for (std::size_t at = 0; at < raw.size(); at += yield_every) {
        lines.take(raw.substr(at, yield_every), actions);
        yield();
    }
    return lines.finish(options.ignore_after);
}

std::string_view skipped_up_to(std::string_view text, std::string_view mark) {
    const std::size_t at = mark.empty() ? std::string_view::npos : text.find(mark);
    return at == std::string_view::npos ? text : text.substr(at + mark.size());
}

}  // namespace kelvane
