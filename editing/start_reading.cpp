#include "editing/start_reading.h"

#include <algorithm>
#include <utility>

#include "platform/lines.h"

namespace kelvane {

namespace {

constexpr std::size_t evidence_lines = 20'000;  ///< more do not change the verdict

bool has_code(const std::vector<Block_word>& words, std::string_view number) {
    return std::any_of(words.begin(), words.end(), [number](const Block_word& word) {
        return same_number(word.number, number) && !word.number.empty();
    });
}

}  // namespace

void Machining_evidence::read(const Block_words& block) {
    const bool changes = has_code(block.m, "6");
    milling_ += changes || block['Y'] || has_code(block.g, "43") || has_code(block.g, "17") ? 1 : 0;
    const bool station = block['T'] && block['T']->number.size() >= 3 && !changes;
    const bool by_distance = (block['U'] || block['W']) && has_code(block.g, "28");
    const bool speed_limit = has_code(block.g, "50") && block['S'];
    turning_ += station || by_distance || speed_limit || has_code(block.g, "96") ? 1 : 0;
}

Machining Machining_evidence::result() const {
    return turning_ > milling_ ? Machining::turning : Machining::milling;
}

Start_reading::Start_reading(std::size_t line, std::optional<Machining> machining)
    : line_(line), given_(machining.has_value()), machining_(machining), block_line_(line) {}

bool Start_reading::step(std::string_view text, std::size_t budget) {
    while (pass_ != Pass::done && budget > 0) {
        Lines lines(text, place_);
        const bool enough = pass_ == Pass::evidence && lines_read_ >= evidence_lines;
        if (lines.at_end() || enough) {
            begin_next_pass();
            continue;
        }
        read(lines.take());
        budget -= std::min(budget, lines.position() - place_);
        place_ = lines.position();
        ++lines_read_;
    }
    return pass_ == Pass::done;
}

void Start_reading::begin_next_pass() {
    if (pass_ == Pass::evidence) {
        machining_ = given_ ? machining_ : evidence_.result();
        reader_.emplace(*machining_, survey_);
        pass_ = Pass::survey;
    } else if (pass_ == Pass::survey) {
        reader_.emplace(*machining_, std::as_const(survey_));
        pass_ = Pass::state;
    } else {
        if (lines_read_ <= line_) {
            before_ = reader_->state();
        }
        if (block_.empty()) {
            after_ = before_;
        }
        pass_ = Pass::done;
    }
    place_ = lines_read_ = 0;
}

void Start_reading::read(std::string_view line) {
    if (pass_ == Pass::evidence) {
        tape_mark_ = tape_mark_ || (lines_read_ == 0 && line.starts_with('%'));
        evidence_.read(Block_words(line));
        return;
    }
    if (pass_ == Pass::state && lines_read_ >= line_) {
        read_chosen(line);
        return;
    }
    reader_->read_line(line);
}

void Start_reading::read_chosen(std::string_view line) {
    if (lines_read_ == line_) {
        before_ = reader_->state();
    }
    reader_->read_line(line);
    if (Block_words(line).any) {
        block_ = line;
        block_line_ = lines_read_;
        after_ = reader_->state();
        pass_ = Pass::done;
    }
}

}  // namespace kelvane
