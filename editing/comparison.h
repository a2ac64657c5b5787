#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/event_loop.h"
#include "platform/task.h"

namespace kelvane {

/// What does not count as a difference.
struct Compare_options {
    bool ignore_numbers = false;  ///< N numbers, and the blanks behind them
    bool ignore_blanks = false;   ///< blanks and tabs anywhere
};

/// Lines `left` up to `left_end` of one program stand for `right` up to `right_end` of the other;
/// one of the two may be empty. From 0, ends excluded.
struct Difference {
    std::size_t left, left_end;
    std::size_t right, right_end;

    bool operator==(const Difference&) const = default;
};

/// A row of the side-by-side view.
struct Compared_row {
    std::optional<std::size_t> left, right;  ///< lines from 0; none: a gap on that side
    bool differs = false;
};

/// Two programs, line by line beside each other. Line ends are not compared, but a line end at the
/// end of a program is: behind it stands one more, empty line.
class Comparison {
  public:
    /// `differences` ascend and do not touch each other; all other lines, of which the left program
    /// has `left_lines` in all, are the same.
    Comparison(std::vector<Difference> differences, std::size_t left_lines);

    [[nodiscard]] const std::vector<Difference>& differences() const { return differences_; }
    [[nodiscard]] std::size_t row_count() const { return row_count_; }
    /// `row` is below the count.
    [[nodiscard]] Compared_row row(std::size_t row) const;
    /// The first row of a difference; `difference` is below their count.
    [[nodiscard]] std::size_t row_of(std::size_t difference) const { return rows_[difference]; }
    /// The difference that begins behind `row`, the last that begins before it; none at the ends.
    [[nodiscard]] std::optional<std::size_t> next(std::size_t row) const;
    [[nodiscard]] std::optional<std::size_t> previous(std::size_t row) const;

  private:
    std::vector<Difference> differences_;
    std::vector<std::size_t> rows_;  ///< first row of each difference
    std::size_t row_count_;
};

/// Compares two programs, letting others in all the while; give the task up to stop it. Lines that
/// each program holds once and both hold in the same order are put beside each other, then what
/// lies between is compared line by line; where that would take too long for programs that have
/// little in common, it is one difference. The texts must stay until the task ends.
Task<Comparison> compare_programs(Event_loop& loop, std::string_view left, std::string_view right,
                                  Compare_options options);

}  // namespace kelvane
