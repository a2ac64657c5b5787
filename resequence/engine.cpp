#include "resequence/engine.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/basic_text.h"
#include "platform/lines.h"
#include "resequence/block.h"
#include "resequence/goto_table.h"

namespace kelvane {

namespace {

constexpr std::size_t portion_length = 8192;

/// What ended a pass before its time.
using Early_end = std::optional<Resequence_result>;

/// One run over one text; the passes are its members, in their order.
class Resequencer {
  public:
    Resequencer(std::string_view text, const Resequence_options& options,
                const Resequence_progress& progress)
        : text_(without_end_mark(text)),
          options_(options),
          progress_(progress),
          numbers_(options) {}

    Task<Resequence_result> run() {
        if (options_.maximum_with_gotos()) {
            co_return Maximum_with_gotos{};
        }
        Early_end end = co_await collect_targets();
        if (!end) {
            end = co_await renumber();
        }
        if (!end) {
            end = co_await rewrite_gotos();
        }
        if (!end) {
            end = Resequenced{std::move(result_), open_bracket_line_};
        }
        co_return *std::move(end);
    }

  private:
    Task<Early_end> collect_targets();
    Early_end collect_targets_of(std::string_view line);
    Task<Early_end> renumber();
    Early_end renumber_line(std::string_view line);
    [[nodiscard]] bool stays_as_read(std::string_view line) const;
    [[nodiscard]] bool gets_no_number(const Block& block, bool bracketed) const;
    void write_numbered(const Block& block, const std::string& number);
    Task<Early_end> rewrite_gotos();
    Early_end rewrite_gotos_of(std::string_view line, std::string& rewritten) const;
    [[nodiscard]] bool in_brackets(const Block& block);

    /// Does `work` for every line of `text` and asks every `portion_length` bytes whether to go on.
    template <typename Percent, typename Work>
    Task<Early_end> for_each_line(std::string_view text, Percent percent, Work work) const {
        std::size_t next_question = 0;
        for (Lines lines(text); !lines.at_end();) {
            if (lines.position() >= next_question) {
                bool goes_on = true;
                if (progress_) {
                    goes_on = co_await progress_(percent());
                }
                if (!goes_on) {
                    co_return Resequence_cancelled{};
                }
                next_question = lines.position() + portion_length;
            }
            if (Early_end end = work(lines.take())) {
                co_return end;
            }
        }
        co_return std::nullopt;
    }
    [[nodiscard]] int percent_done() const {
        return static_cast<int>(bytes_done_ * 100 / text_.size() % 100);
    }

    std::string_view text_;
    const Resequence_options& options_;
    const Resequence_progress& progress_;
    Goto_table targets_;
    Block_numbers numbers_;
    Bracket_comment brackets_;
    std::uint64_t bytes_done_ = 0;  ///< every line end counts two bytes, as in the result
    std::int64_t lines_done_ = 0;
    std::int64_t open_bracket_line_ = 0;  ///< where the bracket comment that is open began; 0: none
    std::string result_;
};

Task<Early_end> Resequencer::collect_targets() {
    if (!options_.gotos) {
        co_return std::nullopt;
    }
    const Task<Early_end> pass = for_each_line(
        text_, [] { return 0; },
        [this](std::string_view line) { return collect_targets_of(line); });
    co_return co_await pass;
}

Early_end Resequencer::collect_targets_of(std::string_view line) {
    std::size_t from = 0;
    while (const auto found = find_goto(line, from)) {
        if (!targets_.add(found->text)) {
            return Fault::subscript_out_of_range;
        }
        from = found->end();
    }
    return std::nullopt;
}

Task<Early_end> Resequencer::renumber() {
    result_.reserve(text_.size() + text_.size() / 4);
    return for_each_line(
        text_, [this] { return percent_done(); },
        [this](std::string_view line) { return renumber_line(line); });
}

/// To be asked once a line, in their order.
bool Resequencer::in_brackets(const Block& block) {
    if (options_.bracket_comments) {
        return false;
    }
    const bool covered = brackets_.covers(block.rest);
    if (!brackets_.open()) {
        open_bracket_line_ = 0;
    } else if (open_bracket_line_ == 0) {
        open_bracket_line_ = lines_done_;
    }
    return covered;
}

Early_end Resequencer::renumber_line(std::string_view line) {
    ++lines_done_;
    bytes_done_ += line.size() + cr_lf.size();
    const Block block = split_block(line, options_);
    const bool bracketed = in_brackets(block);
    bool countable = true;
    if (stays_as_read(line)) {
        result_ += line;
    } else {
        const std::string& number = numbers_.text();
        const bool is_target = !targets_.empty() && targets_.renumbered(block.old_number, number);
        if (!is_target && gets_no_number(block, bracketed)) {
            result_.append(block.prefix).append(block.rest);
        } else {
            write_numbered(block, number);
            countable = numbers_.advance();
        }
    }
    result_.append(options_.add_to).append(cr_lf);
    return countable ? Early_end() : Fault::overflow;
}

bool Resequencer::stays_as_read(std::string_view line) const {
    constexpr std::uint64_t short_id_end = 10;
    const char first = line.empty() ? '\0' : line[0];
    if (options_.n_lines_only && first != 'N' && first != 'n') {
        return true;
    }
    if (options_.skip_id_lines &&
        (first == '%' || first == ':' || (first == 'L' && bytes_done_ < short_id_end))) {
        return true;
    }
    return line.empty() && !options_.blank_lines;
}

bool Resequencer::gets_no_number(const Block& block, bool bracketed) const {
    const std::string_view words = block.rest;
    return bracketed || (!options_.comments && words.starts_with('(')) ||
           (options_.t_lines_only && words.find('T') == std::string_view::npos) ||
           (!options_.blank_lines && words.empty() && block.prefix.empty());
}

void Resequencer::write_numbered(const Block& block, const std::string& number) {
    result_ += block.prefix;
    if (block.keeps_letter) {
        result_ += block.letter;
    } else if (options_.h_with_w && moves_w(block.rest)) {
        result_ += 'H';
    } else {
        result_ += options_.n_character;
    }
    result_.append(number).append(block.rest);
}

Task<Early_end> Resequencer::rewrite_gotos() {
    if (targets_.empty()) {
        co_return std::nullopt;
    }
    lines_done_ = 0;
    std::string rewritten;
    rewritten.reserve(result_.size() + result_.size() / 8);
    const Task<Early_end> pass = for_each_line(
        result_, [] { return 99; },
        [&](std::string_view line) {
            ++lines_done_;
            return rewrite_gotos_of(line, rewritten);
        });
    Early_end end = co_await pass;
    result_ = std::move(rewritten);
    co_return end;
}

/// The text added to every line is no part of a target, though it may begin with blanks or digits.
Early_end Resequencer::rewrite_gotos_of(std::string_view line, std::string& rewritten) const {
    const std::size_t added = std::min(options_.add_to.size(), line.size());
    const std::string_view read = line.substr(0, line.size() - added);
    std::size_t copied = 0;
    while (const auto found = find_goto(read, copied)) {
        const auto number = targets_.replacement(found->text);
        if (!number) {
            return Unresolved_goto{std::string(found->text), found->end() == read.size(),
                                   lines_done_};
        }
        rewritten.append(read.substr(copied, found->position - copied)).append(*number);
        copied = found->end();
    }
    rewritten.append(line.substr(copied)).append(cr_lf);
    return std::nullopt;
}

}  // namespace

Resequence_result resequence(std::string_view text, const Resequence_options& options) {
    const Resequence_progress none;
    Resequencer resequencer(text, options, none);
    return at_once(resequencer.run());
}

Task<Resequence_result> resequence(std::string_view text, Resequence_options options,
                                   Resequence_progress progress) {
    Resequencer resequencer(text, options, progress);
    co_return co_await resequencer.run();
}

}  // namespace kelvane
