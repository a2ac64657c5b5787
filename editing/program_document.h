#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "editing/line_index.h"
#include "editing/text_encoding.h"
#include "editing/text_view.h"

namespace kelvane {

/// A program as bytes, with undo. What is not edited stays byte for byte as it was loaded, whatever
/// its line ends, control characters and encoding. A program beyond `max_editable` is for looking.
///
/// Offsets are in bytes.
class Program_document {
  public:
    static constexpr std::size_t max_editable = std::size_t{16} << 20;
    /// An edit that would make the program longer than this is refused.
    static constexpr std::size_t max_grown = 2 * max_editable;

    // --- Loading: the bytes at once or in pieces, then `prepare` until it says true.
    void load(std::string bytes);
    /// Begins with an empty program; `expected` bytes are set aside.
    void begin_load(std::size_t expected);
    void load_piece(std::string_view piece) { own_text() += piece; }
    /// Recognises the encoding and finds the lines, `budget` bytes at a time. True when all is
    /// done: only then what is said of lines holds, and the program can be edited.
    bool prepare(std::size_t budget = std::string::npos);

    // --- Reading
    [[nodiscard]] const std::string& text() const { return *text_; }
    /// The same for others to keep: it stays as it is now.
    [[nodiscard]] std::shared_ptr<const std::string> shared_text() const { return text_; }
    /// For looking; valid until the next edit.
    [[nodiscard]] Text_view view() const { return {text(), &index_, encoding()}; }
    [[nodiscard]] Text_encoding encoding() const { return check_.result(); }
    [[nodiscard]] bool editable() const { return prepared_ && loaded_size_ <= max_editable; }
    /// At least 1; after a line end at the end of the program stands one more, empty line.
    [[nodiscard]] std::size_t line_count() const { return index_.line_count(); }
    [[nodiscard]] std::size_t line_start(std::size_t line) const;
    [[nodiscard]] std::size_t line_at(std::size_t offset) const;
    /// The line without its line end; empty for lines that do not exist. Valid until the next edit.
    [[nodiscard]] std::string_view line(std::size_t line) const;
    /// What Enter writes at `offset`: the end of the line there, else of the one before, else CR
    /// LF.
    [[nodiscard]] std::string_view line_end_at(std::size_t offset) const;

    // --- Editing. False, and nothing changed: the program is not editable, the range is not in it,
    // or it would grow too long.
    /// Replaces bytes as one step for undo.
    bool replace(std::size_t at, std::size_t removed, std::string_view added);
    /// The operator has written over bytes, or removed them: what is written or removed letter by
    /// letter is one step for undo. "?" stands for what Latin-1 lacks. False, too, when nothing is
    /// different.
    bool typed(std::size_t at, std::size_t removed, std::u16string_view added);
    /// What is written next begins a new step for undo: the caret was moved, the program saved.
    void end_step() { step_open_ = false; }

    [[nodiscard]] bool can_undo() const { return done_ > 0; }
    [[nodiscard]] bool can_redo() const { return done_ < edits_.size(); }
    /// Where what has come back ends; no value when there is nothing to undo or redo.
    std::optional<std::size_t> undo();
    std::optional<std::size_t> redo();

    /// True when the program differs from what was loaded or saved last.
    [[nodiscard]] bool changed() const { return !saved_ || *saved_ != done_; }
    void mark_saved();
    /// As long as it is not saved it counts as changed, whatever is undone.
    void mark_changed() { saved_.reset(); }
    /// Grows with every change of the bytes.
    [[nodiscard]] std::uint64_t revision() const { return revision_; }

  private:
    struct Edit {
        std::size_t at;
        std::string removed, added;
    };

    void begin(std::string bytes);
    /// For a change: a copy when others keep the text.
    [[nodiscard]] std::string& own_text();
    [[nodiscard]] bool allowed(std::size_t at, std::size_t removed, std::size_t added) const;
    void exchange(std::size_t at, std::size_t removed, std::string_view added);
    void remember(Edit edit);
    bool continues_step(const Edit& edit);
    void forget_beyond_limit();

    std::shared_ptr<std::string> text_ = std::make_shared<std::string>();
    Encoding_check check_;
    std::size_t checked_ = 0;  ///< bytes
    Line_index index_;
    bool prepared_ = false;
    std::size_t loaded_size_ = 0;

    std::deque<Edit> edits_;
    std::size_t done_ = 0;  ///< the first so many edits are in the text
    std::size_t edit_bytes_ = 0;
    std::optional<std::size_t> saved_ = 0;  ///< value of `done_` whose text is on disk
    bool step_open_ = false;
    std::uint64_t revision_ = 0;
};

}  // namespace kelvane
