#include "simulated_machine/program_text.h"

#include <cctype>
#include <cstdlib>

namespace kelvane::simulated {

bool has_program_stop(std::string_view block) {
    bool in_comment = false;
    for (std::size_t i = 0; i < block.size(); ++i) {
        in_comment = block[i] == '(' || (in_comment && block[i] != ')');
        if (in_comment || block[i] != 'M') {
            continue;
        }
        std::string digits;
        for (std::size_t k = i + 1; k < block.size() && std::isdigit(block[k]) != 0; ++k) {
            digits += block[k];
        }
        if (digits == "30" || digits == "02" || digits == "2") {
            return true;
        }
    }
    return false;
}

Program_text::Program_text(std::string_view end_of_block, bool label_skip)
    : end_of_block_(end_of_block == "\r\n" || end_of_block == "\n\r" ? "\n" : end_of_block),
      skipping_(label_skip) {}

void Program_text::feed(char character) {
    if (ended_ || character == 0) {
        return;
    }
    block_ += character;
    if (block_.ends_with(end_of_block_)) {
        block_.resize(block_.size() - end_of_block_.size());
        finish_block();
    } else if (!skipping_) {
        watch_for_end(character);
    }
}

void Program_text::watch_for_end(char character) {
    if (character == '%' && !in_comment_ && begun_) {
        ended_ = true;
    } else if (character > ' ' && character != '%') {
        begun_ = true;
        in_comment_ = character == '(' || (in_comment_ && character != ')');
    }
}

void Program_text::finish_block() {
    std::string line = printable(block_);
    if (skipping_) {
        skipping_ = !line.ends_with('%');
        line = "%";
    }
    if (!skipping_) {
        text_ += line + "\r\n";
        program_stop_ = program_stop_ || has_program_stop(line);
    }
    in_comment_ = false;
    block_.clear();
}

std::string Program_text::printable(std::string_view block) {
    std::string line;
    for (const char character : block) {
        const auto value = static_cast<unsigned char>(character);
        if ((value >= 32 && value != 127) || character == '\t') {
            line += character;
        }
    }
    return line;
}

}  // namespace kelvane::simulated
