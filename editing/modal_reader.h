#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "editing/axis_words.h"
#include "editing/block_words.h"
#include "editing/modal_memory.h"

namespace kelvane {

/// Reads a program line by line: what its words say, said to a `Modal_memory`.
class Modal_reader {
  public:
    /// A first reading: notes into `survey`, which must outlive the reader.
    Modal_reader(Machining machining, Program_survey& survey)
        : machining_(machining), memory_(survey) {}
    /// A second reading, after the survey of the whole program.
    Modal_reader(Machining machining, const Program_survey& survey)
        : machining_(machining), memory_(survey) {}

    /// The program's next line, without its end. Any bytes are safe to read; what is not understood
    /// is a doubt of what it might have changed.
    void read_line(std::string_view line);

    [[nodiscard]] const Modal_state& state() const { return memory_.state(); }
    /// Lines read: the number from 0 of the next.
    [[nodiscard]] std::size_t lines() const { return memory_.lines(); }

  private:
    void begin_block(const Block_words& block);
    void read_block(const Block_words& block);
    void read_statements(const Block_words& block);
    void read_jump(const Block_word& statement);
    void read_g_codes(const Block_words& block);
    void read_g_code(const Block_word& word, const Block_words& block);
    void read_unknown_code(const Block_word& word, const Block_words& block);
    [[nodiscard]] G_use use_of(int code, const Block_words& block) const;
    void hold(const G_use& use, int code, const Block_word& word, const Block_words& block);
    void take_axes(const G_use& use, int code);
    [[nodiscard]] const Block_word* p_of(const Block_word& word, Modal group,
                                         const Block_words& block) const;
    void doubt_numbers(Modal group, const Setting& before, const Block_words& block);
    void read_contour(int code, const Block_words& block);
    void read_values(const Block_words& block);
    void read_offsets(const Block_words& block);
    void doubt_arguments();
    void read_m_codes(const Block_words& block);
    void read_m_code(int code, const Block_word& word);
    void call(std::optional<std::size_t> Program_survey::*first, Doubt why);
    void keep_clearance(const Block_words& block);
    void leave_contour(const Block_words& block);

    Machining machining_;
    Modal_memory memory_;
    Axes axes_ = Axes::positions;  ///< of this block
    bool dwell_ = false;
    bool clearance_awaited_ = false;
    std::string contour_begin_, contour_end_;  ///< N numbers
    std::string contour_entered_;              ///< N number of the first block
};

}  // namespace kelvane
