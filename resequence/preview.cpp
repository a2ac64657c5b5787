#include "resequence/preview.h"

#include <algorithm>

#include "platform/basic_text.h"
#include "platform/lines.h"
#include "resequence/report.h"

namespace kelvane {

namespace {

constexpr int lines_shown = 40;
constexpr std::size_t longest_line = 200;

/// The first lines of `text`, with their ends.
std::string_view first_lines(std::string_view text) {
    Lines lines(text);
    for (int line = 0; line < lines_shown && !lines.at_end(); ++line) {
        lines.take();
    }
    return text.substr(0, lines.position());
}

/// The first lines as they are shown.
std::vector<std::string> shown_lines(std::string_view text) {
    std::vector<std::string> result;
    for (Lines lines(first_lines(text)); !lines.at_end();) {
        const std::string_view line = lines.take();
        result.push_back(std::string(line.substr(0, longest_line)) +
                         (line.size() > longest_line ? "..." : ""));
    }
    return result;
}

/// The notes beside a preview, a line each.
class Notes {
  public:
    void add(const std::string& note) { text_ += (text_.empty() ? "" : "\n") + note; }
    void add_about_line(std::int64_t line, const std::string& note) {
        add("Line " + decimal(line) + ": " + note);
    }
    [[nodiscard]] const std::string& text() const { return text_; }

  private:
    std::string text_;
};

/// Options with which every block would get the same number.
void note_standing_number(const Resequence_options& options, Notes& notes) {
    if (options.increment == 0) {
        notes.add("The increment is 0 or empty: every block gets the same number.");
    }
    if (options.maximum != 0 && options.start > options.maximum) {
        notes.add("The start is above the maximum N#: every block gets the same number.");
    } else if (options.maximum != 0 && options.increment > 0 &&
               options.start + options.increment > options.maximum) {
        notes.add("The second number is above the maximum N#: every block gets the same number.");
    }
}

void note_refusal(const Resequence_result& result, Notes& notes) {
    std::string words = refusal_text(result);
    std::replace(words.begin(), words.end(), '\n', ' ');
    if (const auto* jump = std::get_if<Unresolved_goto>(&result)) {
        notes.add_about_line(jump->line, words);
    } else {
        notes.add(words);
    }
}

void note_open_bracket(const Resequenced& done, Notes& notes) {
    if (done.open_bracket_line != 0) {
        notes.add_about_line(done.open_bracket_line,
                             R"(this "[" is never closed: no line from here on gets a number.)");
    }
}

/// The options for a part of a program, or for one whose jumps cannot follow.
Resequence_options numbers_only(Resequence_options options) {
    options.maximum = options.gotos ? 0 : options.maximum;
    options.gotos = false;
    return options;
}

Resequence_preview preview_of(std::string_view program, const Resequence_result& result,
                              const Notes& notes) {
    const auto* done = std::get_if<Resequenced>(&result);
    return {shown_lines(without_end_mark(program)),
            done != nullptr ? shown_lines(done->text) : std::vector<std::string>(), notes.text()};
}

}  // namespace

Task<Resequence_preview> preview_resequencing(std::string_view program, Resequence_options options,
                                              Resequence_progress progress) {
    Notes notes;
    note_standing_number(options, notes);
    const Task<Resequence_result> as_asked = resequence(program, options, progress);
    Resequence_result result = co_await as_asked;
    if (!std::holds_alternative<Resequenced>(result)) {
        note_refusal(result, notes);
        const Task<Resequence_result> numbered =
            resequence(program, numbers_only(options), progress);
        result = co_await numbered;
    }
    if (const auto* done = std::get_if<Resequenced>(&result)) {
        note_open_bracket(*done, notes);
    }
    co_return preview_of(program, result, notes);
}

Resequence_preview preview_start(std::string_view program, const Resequence_options& options) {
    Notes notes;
    note_standing_number(options, notes);
    notes.add("The whole program is still being looked at.");
    return preview_of(program, resequence(first_lines(program), numbers_only(options)), notes);
}

}  // namespace kelvane
