#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "editing/block_words.h"
#include "editing/modal_codes.h"

namespace kelvane {

/// Why a value cannot be relied on though the program has set it.
enum class Doubt : std::uint8_t {
    none,
    incremental,     ///< the axis has moved by a distance since
    distance,        ///< whether the number is a place or a distance is not known
    variable,        ///< the value comes from a variable or an expression
    sub_program,     ///< a sub-program or a macro has run since
    called_file,     ///< another file has run since
    jump,            ///< the control may have come here from elsewhere
    block_skip,      ///< depends on the block skip switch
    reference,       ///< the axis has gone to a place of the machine
    tool_change,     ///< a tool change may have altered it
    offset_change,   ///< the number counts from another zero point now
    transformation,  ///< the coordinates are turned, scaled, mirrored or polar
    cycle,           ///< a cycle has moved the axis
    program_end,     ///< a program has ended since
    maker_differs,   ///< makers give the code different meanings
    unread,          ///< something has come since that this reader does not know
};

/// The operator's words for a doubt: "a sub-program has run"; empty for `none`.
std::string_view doubt_text(Doubt doubt);

/// One value of the modal state.
struct Setting {
    std::string word;  ///< as the program wrote it, in capitals: "G01", "X-1.5", "G54.1 P2"; empty:
                       ///< not set before
    int code = -1;     ///< tenths of a G code, or the M code; -1: neither
    std::size_t line = 0;  ///< from 0, that set it
    Doubt doubt = Doubt::none;
    std::size_t doubt_line = 0;  ///< from 0, that made it doubtful

    [[nodiscard]] bool known() const { return !word.empty() && doubt == Doubt::none; }
};

/// The operator's words: "G54, line 15", "G54, line 15, but a sub-program has run, line 20", "not
/// set before".
std::string setting_text(const Setting& setting);

/// A code that only the machine's maker knows.
struct Other_code {
    std::string word;
    std::size_t line;  ///< of its last use
};

/// What a control that has run all blocks before a line remembers, as far as the text tells.
struct Modal_state {
    std::array<Setting, modal_count> settings;
    /// Height to which the tool went when its length compensation was switched on, as a word.
    Setting clearance;
    std::vector<Other_code> others;  ///< at most `max_others`, in the order of their first use
    std::optional<std::size_t> tool_change;  ///< line of the last one
    bool in_contour = false;  ///< in the blocks that a lathe's G71, G72 or G73 names with P and Q

    static constexpr std::size_t max_others = 16;

    [[nodiscard]] const Setting& operator[](Modal modal) const {
        return settings[static_cast<std::size_t>(modal)];
    }
    /// True when a group's code is set, doubtful or not, and does not end the group's effect.
    [[nodiscard]] bool active(Modal group) const;
};

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
    std::optional<std::size_t> first_jump, first_variable, first_call,
        first_called_file;  ///< lines
};

/// A block's words, sorted.
struct Block_words {
    std::vector<Block_word> g, m, statements, others;
    std::optional<Block_word> program_number;  ///< only as the block's first word
    std::optional<std::string_view> number;    ///< N
    bool skip = false;                         ///< block skip in it
    bool unread = false;                       ///< something in it is no word
    bool variable = false;                     ///< uses or sets one
    bool any = false;  ///< there is more than comments, N number and controls

    explicit Block_words(std::string_view line);
    /// The last word with this letter among the others; null for none.
    [[nodiscard]] const Block_word* operator[](char letter) const;
    [[nodiscard]] bool has_axes() const;
};

/// Reads a program line by line and keeps the modal state. A first reading over the whole program
/// fills the survey, without which the second would not know what a jump can alter.
class Modal_reader {
  public:
    /// A first reading: notes into `survey`, which must outlive the reader.
    Modal_reader(Machining machining, Program_survey& survey);
    /// A second reading, after the survey of the whole program.
    Modal_reader(Machining machining, const Program_survey& survey);

    void read_line(std::string_view line);

    [[nodiscard]] const Modal_state& state() const { return state_; }
    /// Lines read: the number from 0 of the next.
    [[nodiscard]] std::size_t lines() const { return line_; }

  private:
    /// What the axis words of a block stand for.
    enum class Axes { positions, nothing, reference, shift, unknown };

    void read_block(const Block_words& block);
    void read_statements(const Block_words& block);
    void read_jump(const Block_word& statement);
    void read_g_codes(const Block_words& block);
    void read_g_code(const Block_word& word, const Block_words& block);
    void hold(const G_use& use, int code, const Block_word& word, const Block_words& block);
    void read_shift(const Block_words& block, std::string_view g_word);
    void read_contour(const Block_words& block);
    void read_axes(const Block_words& block);
    void read_axis(Modal axis, const Block_word& word);
    void read_incremental(Modal axis, const Block_word* word);
    [[nodiscard]] Doubt position_doubt() const;
    void read_values(const Block_words& block);
    void read_m_codes(const Block_words& block);
    void read_m_code(int code, const Block_word& word);
    void change_tool();
    void keep_clearance(const Block_words& block);
    void leave_contour(const Block_words& block);

    Setting& at(Modal modal) { return state_.settings[static_cast<std::size_t>(modal)]; }
    void set(Modal modal, std::string word, int code = -1);
    void set_value(Modal modal, const Block_word& word);
    void doubt(Modal modal, Doubt why);
    void doubt_positions(Doubt why);
    void doubt_all(Doubt why);
    void jump_or_target();
    void note_other(const std::string& word);
    void note_line(std::optional<std::size_t> Program_survey::*first);
    [[nodiscard]] bool is_target(std::string_view number) const;

    Machining machining_;
    Program_survey* noting_;  ///< null in a second reading
    const Program_survey& survey_;
    Modal_state state_;
    std::size_t line_ = 0;

    Axes axes_ = Axes::positions;      ///< of this block
    Doubt block_doubt_ = Doubt::none;  ///< of all that this block sets
    bool dwell_ = false;
    bool clearance_awaited_ = false;
    bool jumps_begun_ = false;
    std::array<bool, modal_count> certain_{};  ///< whatever way the jumps went
    std::optional<Modal_state> before_contour_;
    std::string contour_begin_, contour_end_;  ///< N numbers
};

}  // namespace kelvane
