#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "editing/modal_reader.h"

namespace kelvane {

/// Weighs whether a program is for a mill or a lathe.
class Machining_evidence {
  public:
    void read(const Block_words& block);
    [[nodiscard]] Machining result() const;
    /// False when the program shows signs of neither or of both.
    [[nodiscard]] bool sure() const { return (milling_ == 0) != (turning_ == 0); }

  private:
    std::size_t milling_ = 0, turning_ = 0;  ///< signs
};

/// Reads a program for a start in its middle: all of it once for what holds everywhere, then all
/// lines before the one chosen. `step` until it says true; the text must stay the same meanwhile.
class Start_reading {
  public:
    /// `line` from 0. Without `machining` it is recognised.
    Start_reading(std::size_t line, std::optional<Machining> machining);
    Start_reading(const Start_reading&) = delete;
    Start_reading& operator=(const Start_reading&) = delete;

    /// Reads `budget` bytes and the rest of the line where they end.
    bool step(std::string_view text, std::size_t budget = std::string_view::npos);

    [[nodiscard]] Machining machining() const { return *machining_; }
    [[nodiscard]] bool machining_sure() const { return given_ || evidence_.sure(); }
    [[nodiscard]] const Program_survey& survey() const { return survey_; }
    /// The line chosen, from 0.
    [[nodiscard]] std::size_t line() const { return line_; }
    /// What the control remembers before the line chosen.
    [[nodiscard]] const Modal_state& before() const { return before_; }
    /// The same after the first block from the line chosen on.
    [[nodiscard]] const Modal_state& after() const { return after_; }
    /// That block; empty when the program ends before.
    [[nodiscard]] const std::string& block() const { return block_; }
    /// Its line from 0.
    [[nodiscard]] std::size_t block_line() const { return block_line_; }
    /// True when the program's first line is a tape mark.
    [[nodiscard]] bool has_tape_mark() const { return tape_mark_; }

  private:
    enum class Pass { evidence, survey, state, done };

    void read(std::string_view line);
    void begin_next_pass();
    void read_chosen(std::string_view line);

    std::size_t line_;
    bool given_;
    std::optional<Machining> machining_;
    Pass pass_ = Pass::evidence;
    std::size_t place_ = 0;       ///< byte
    std::size_t lines_read_ = 0;  ///< of this pass
    Machining_evidence evidence_;
    Program_survey survey_;
    std::optional<Modal_reader> reader_;
    Modal_state before_, after_;
    std::string block_;
    std::size_t block_line_;
    bool tape_mark_ = false;
};

}  // namespace kelvane
