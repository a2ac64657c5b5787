#include "resequence/preview.h"

#include <algorithm>

#include "resequence/report.h"

namespace kelvane {

namespace {

constexpr int lines_shown = 40;
constexpr std::size_t longest_line = 200;

/// The first lines of `text`, with their ends.
std::string_view first_lines(std::string_view text) {
    std::size_t end = 0;
    for (int line = 0; line < lines_shown && end < text.size(); ++line) {
        const std::size_t found = text.find('\n', end);
        end = found == std::string_view::npos ? text.size() : found + 1;
    }
    return text.substr(0, end);
}

std::string shown(std::string_view line) {
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return std::string(line.substr(0, longest_line)) + (line.size() > longest_line ? "..." : "");
}

/// The first lines as they are shown.
std::vector<std::string> shown_lines(std::string_view text) {
    text = first_lines(text);
    std::vector<std::string> result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        result.push_back(shown(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

}  // namespace

Resequence_preview preview_resequencing(std::string_view program_start,
                                        const Resequence_options& options) {
    Resequence_preview preview;
    preview.before = shown_lines(program_start);
    Resequence_options numbers_only = options;
    numbers_only.gotos = false;
    numbers_only.maximum = options.gotos ? 0 : options.maximum;
    const bool whole = program_start.size() <= whole_preview_length;
    Resequence_result result = resequence(whole ? program_start : first_lines(program_start),
                                          whole ? options : numbers_only);
    if (!std::holds_alternative<Resequenced>(result)) {
        preview.note = refusal_text(result);
        std::replace(preview.note.begin(), preview.note.end(), '\n', ' ');
        result = resequence(first_lines(program_start), numbers_only);
    } else if (!whole && options.gotos) {
        preview.note = "GOTOs are rewritten, too, but not shown for a program of this size.";
    }
    if (const auto* done = std::get_if<Resequenced>(&result)) {
        preview.after = shown_lines(done->text);
    }
    return preview;
}

}  // namespace kelvane
