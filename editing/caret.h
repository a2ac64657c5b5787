#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "editing/text_view.h"

namespace kelvane {

/// Where a key moves the caret.
enum class Caret_step : std::uint8_t {
    left,
    right,
    word_left,
    word_right,
    up,
    down,
    page_up,
    page_down,
    line_start,
    line_end,
    text_start,
    text_end,
};

/// The operator's place in a text: the caret, and what is selected from the anchor to it. Offsets
/// in bytes, always at the first byte of a character.
class Caret {
  public:
    [[nodiscard]] std::size_t place() const { return place_; }
    [[nodiscard]] std::size_t anchor() const { return anchor_; }
    [[nodiscard]] std::size_t begin() const { return place_ < anchor_ ? place_ : anchor_; }
    [[nodiscard]] std::size_t end() const { return place_ < anchor_ ? anchor_ : place_; }
    [[nodiscard]] bool selects() const { return place_ != anchor_; }

    /// To an offset of a character; with `select` the anchor stays.
    void put(std::size_t offset, bool select = false);
    /// Selects from `from` to `to`, where the caret stands.
    void select(std::size_t from, std::size_t to);
    /// `page` lines are seen at once. Up and down keep the column at which the caret was first.
    void step(const Text_view& text, Caret_step step, bool select, std::size_t page);
    /// Selects the word at `offset`: a block's word, or a run of blanks.
    void select_word(const Text_view& text, std::size_t offset);
    /// Selects the line at `offset` with its line end.
    void select_line(const Text_view& text, std::size_t offset);
    /// Keeps both ends inside a text that has changed.
    void clamp(const Text_view& text);

  private:
    [[nodiscard]] std::size_t vertical(const Text_view& text, Caret_step step, std::size_t page);

    std::size_t place_ = 0;
    std::size_t anchor_ = 0;
    std::optional<std::size_t> column_;  ///< of a series of vertical steps
};

}  // namespace kelvane
