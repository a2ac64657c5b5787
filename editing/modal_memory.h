#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "editing/block_words.h"
#include "editing/modal_state.h"

namespace kelvane {

/// What holds for the program as a whole.
struct Program_survey {
    struct Seen {
        std::string word;
        bool several = false;  ///< values, or one that is not known
    };
    std::array<Seen, modal_count> seen;
    std::set<std::string, std::less<>> targets;  ///< of jumps: essential numbers
    bool any_target = false;                     ///< a jump may lead to every N number
    bool changes_with_m6 = false;
    /// A lathe's contour and the last G70 that reads it; lines.
    struct Contour_use {
        std::size_t begin, last_use;
    };
    std::vector<Contour_use> contours;
    std::optional<std::size_t> first_jump, first_variable, first_call, first_called_file,
        first_turn;  ///< lines; a rotary axis turns when it is not only sent to where it is
};

/// Keeps the modal state while a program's blocks are read one after the other: what is set, and
/// what makes it doubtful. A first reading of the whole program fills the survey, without which a
/// second would not know what a jump can alter.
class Modal_memory {
  public:
    /// A first reading: notes into `survey`, which must outlive the memory.
    explicit Modal_memory(Program_survey& survey) : noting_(&survey), survey_(survey) {}
    /// A second reading, after the survey of the whole program.
    explicit Modal_memory(const Program_survey& survey) : noting_(nullptr), survey_(survey) {}

    [[nodiscard]] const Modal_state& state() const { return state_; }
    [[nodiscard]] const Program_survey& survey() const { return survey_; }
    /// Lines read: the number from 0 of the next.
    [[nodiscard]] std::size_t lines() const { return line_; }

    /// `doubt` goes with all that the block sets.
    void begin_block(Doubt doubt) {
        block_doubt_ = doubt;
        state_.after_contour_cycle = false;
    }
    void end_line() { ++line_; }
    /// Another program, which nobody may have started from the one above.
    void begin_program();

    /// `code` as in `Setting`.
    void set(Modal modal, std::string word, int code = -1);
    void set_value(Modal modal, const Block_word& word);
    /// Nothing happens to what is not set.
    void doubt(Modal modal, Doubt why);
    void doubt_positions(Doubt why);
    /// The same, and of the offset that they count from.
    void doubt_zero_point(Doubt why);
    void doubt_all(Doubt why);
    /// A jump leaves here, or may arrive here. Only what has been set before the first of them, and
    /// nowhere to anything else, holds on every way through the program.
    void jump_or_target();
    /// Takes the next tool. Machines go somewhere to change, and stop what runs or leave that to
    /// the program.
    void change_tool();
    /// The height where the tool is now is that of its length compensation.
    void keep_clearance() { state_.clearance = state_[Modal::z]; }
    void forget_clearance() { state_.clearance = {}; }
    /// The blocks of a contour are read by the cycle; behind them the control is where it was
    /// before. Nothing happens when none has been entered.
    void enter_contour();
    void leave_contour();
    void contour_cycle() { state_.after_contour_cycle = true; }
    void note_other(const std::string& word);
    void note_unknown_code() { state_.unknown_code = true; }
    void note_lone_number(bool lone) { state_.lone_number = lone; }

    // What only a first reading notes.
    void note_line(std::optional<std::size_t> Program_survey::*first);
    /// Without `number`: a jump may lead to every N number.
    void note_target(std::string_view number);
    void note_change_by_m6();
    /// The contour entered last is read again.
    void note_contour_use();

    [[nodiscard]] bool is_target(std::string_view number) const;

  private:
    Setting& at(Modal modal) { return state_.settings[static_cast<std::size_t>(modal)]; }
    void doubt_setting(Setting& setting, Doubt why) const;

    Program_survey* noting_;  ///< null in a second reading
    const Program_survey& survey_;
    Modal_state state_;
    std::size_t line_ = 0;
    Doubt block_doubt_ = Doubt::none;
    bool jumps_begun_ = false;
    std::array<bool, modal_count> certain_{};  ///< whatever way the jumps went
    std::optional<Modal_state> before_contour_;
    std::optional<std::size_t> contour_;  ///< line where the last one begins
};

}  // namespace kelvane
