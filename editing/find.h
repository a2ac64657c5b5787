#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "editing/text_encoding.h"

namespace kelvane {

/// What the operator looks for.
struct Find_options {
    bool case_sensitive = false;
    /// Only where the text found is no part of a longer word. Words are those of blocks: G1 and X10
    /// are words in "G1X10", X1 is none in it, and G54 is none in "G54.1".
    bool whole_word = false;
    bool backwards = false;
};

/// How far a long search is.
enum class Search_state { running, found, not_found };

/// Recognises one text in a stream of bytes, forwards or backwards, in a time that grows with the
/// stream alone. Without regard to case the letters of ASCII and of Latin-1 (as bytes or as UTF-8)
/// are the same.
class Text_matcher {
  public:
    Text_matcher(std::string_view wanted, const Find_options& options, Text_encoding encoding);

    [[nodiscard]] std::size_t length() const { return wanted_.size(); }
    void restart() { matched_ = 0; }
    /// Looks at the byte at `at`, the neighbour of the one before. True when the wanted text begins
    /// (backwards) or ends (forwards) there.
    bool feed(std::string_view text, std::size_t at);

  private:
    [[nodiscard]] char folded(std::string_view text, std::size_t at) const;
    [[nodiscard]] bool is_whole(std::string_view text, std::size_t begin) const;

    Find_options options_;
    Text_encoding encoding_;
    std::string wanted_;                  ///< folded, in the direction of the search
    std::vector<std::size_t> fall_back_;  ///< for so many matched bytes: the next shorter match
    std::size_t matched_ = 0;
};

/// A search that can be stopped: `step` until it says found or not found, or drop it. The text must
/// stay the same from step to step.
class Find {
  public:
    /// Forwards the first match that begins at `from` or behind it, backwards the last that ends at
    /// `from` or before it; then on from the other end of the text. An empty `wanted` is not found.
    Find(std::string_view wanted, const Find_options& options, Text_encoding encoding,
         std::size_t from);

    /// Looks at `budget` bytes.
    Search_state step(std::string_view text, std::size_t budget = std::string_view::npos);
    /// Where the match begins; it is as long as `wanted`.
    [[nodiscard]] std::size_t found_at() const { return found_at_; }
    /// True when the search went on from the other end.
    [[nodiscard]] bool wrapped() const { return wrapped_; }

  private:
    [[nodiscard]] std::size_t bytes_left(std::size_t size) const;

    Text_matcher matcher_;
    bool backwards_;
    std::size_t from_;
    std::size_t passed_ = 0;  ///< bytes of this pass that have been looked at
    bool wrapped_ = false;
    std::size_t found_at_ = 0;
};

/// The edit that replaces all matches: one step for undo.
struct Replacement {
    std::size_t at = 0;
    std::size_t removed = 0;
    std::string added;
    std::size_t count = 0;  ///< of the matches
};

/// Replaces all matches in a text, forwards and without overlaps; nothing is changed until the
/// result is carried out.
class Replace_all {
  public:
    /// A result longer than `max_size` bytes is given up.
    Replace_all(std::string_view wanted, std::string replacement, Find_options options,
                Text_encoding encoding, std::size_t max_size);

    /// `not_found` also when the result would be too long (see `too_long`).
    Search_state step(std::string_view text, std::size_t budget = std::string_view::npos);
    [[nodiscard]] const Replacement& result() const { return result_; }
    [[nodiscard]] bool too_long() const { return too_long_; }

  private:
    void take_match(std::string_view text, std::size_t begin);

    Text_matcher matcher_;
    std::string replacement_;
    std::size_t max_size_;
    std::size_t place_ = 0;
    std::size_t end_of_match_ = 0;
    Replacement result_;
    bool too_long_ = false;
};

}  // namespace kelvane
