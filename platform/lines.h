#pragma once

#include <cstddef>
#include <string_view>

namespace kelvane {

/// The one place where a text is split into lines. A line ends at CR LF, at LF or at a single CR,
/// whichever of them come in one text; a last line needs no end.
///
/// Controls and tape punches also write ends of several characters, which count once: LF CR,
/// LF CR CR and CR CR LF. Hence a CR directly behind an LF is never a blank line of its own; blank
/// lines of a text that keeps to one form of line end are all found. Pairs are taken from the left:
/// LF CR LF CR is two ends, and so is CR LF CR LF.
class Lines {
  public:
    /// The lines of `text`, which must outlive this, from the one that begins at `position`.
    explicit Lines(std::string_view text, std::size_t position = 0)
        : text_(text), position_(position) {}

    [[nodiscard]] bool at_end() const { return position_ >= text_.size(); }
    /// Offset at which the next line begins; the text's length at the end.
    [[nodiscard]] std::size_t position() const { return position_; }
    /// The next line without its end.
    std::string_view take();

  private:
    std::string_view text_;
    std::size_t position_;
};

/// Offset of the first character of a line end at or behind `from`; the text's length without one.
[[nodiscard]] std::size_t find_line_end(std::string_view text, std::size_t from = 0);

/// How many characters the line end has that begins at `at`; 0 when there is none.
[[nodiscard]] std::size_t line_end_length(std::string_view text, std::size_t at);

/// How many lines `text` has.
[[nodiscard]] std::size_t count_lines(std::string_view text);

/// `text` without the end-of-file mark of old PCs, which is the Ctrl-Z (0x1A) with nothing behind
/// it but what fills up a disk block (more of them, NULs) or a line end that an editor has added. A
/// Ctrl-Z in any other place is data.
[[nodiscard]] std::string_view without_end_mark(std::string_view text);

}  // namespace kelvane
