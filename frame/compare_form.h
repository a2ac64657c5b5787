#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "editing/comparison.h"
#include "frame/read_program.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"

namespace kelvane {

/// The last program that has been received.
struct Received_file {
    std::string path;
    /// What stood in the file before the receive; none: nothing did, or more than can be kept.
    std::optional<std::string> before;
};

/// A side of a comparison.
struct Compared_program {
    std::string path;
    /// In the place of what the file holds.
    std::optional<std::string> content;
    std::string remark;  ///< behind the path: what the content is
};

/// "Compare": two programs beside each other, as far as they differ.
class Compare_form : public Form {
  public:
    /// `platform` outlives the form.
    explicit Compare_form(Platform& platform);

    Button Left_button{"Left_button", "&First program..."};
    Button Right_button{"Right_button", "&Second program..."};
    Button Received_button{"Received_button", "&Last received"};
    Check_box chk_ignore_numbers{"chk_ignore_numbers", "Ignore &N numbers"};
    Check_box chk_ignore_blanks{"chk_ignore_blanks", "Ignore &blanks"};
    /// The paths, and rows of both programs: number and text of a line, behind `differs_mark` where
    /// they differ. A gap is the mark alone.
    List_box Left_lst{"Left_lst", "First program"};
    List_box Right_lst{"Right_lst", "Second program"};
    Label left_label{"left_label"};
    Label right_label{"right_label"};
    /// The count of the differences, and which of them is selected; or why there is none.
    Label count_label{"count_label"};
    Button Next_button{"Next_button", "Ne&xt difference"};
    Button Previous_button{"Previous_button", "&Previous difference"};
    Button Close_button{"Close_button", "Close"};

    static constexpr char differs_mark = '>';        ///< in front of a row that differs
    static constexpr std::size_t max_rows = 20'000;  ///< of each list; the rest is only counted

    /// Shows `left` beside the program that was received last; when that is no other, beside one
    /// that the operator chooses.
    Task<> compare(Compared_program left, std::optional<Received_file> received);

  protected:
    void on_unload() override;

  private:
    struct Side {
        Compared_program source;
        Read_program program;
        std::string trouble;
    };

    struct Rows {
        std::vector<std::string> left, right;
        std::size_t next = 0;  ///< the comparison's row that comes next
    };

    void attach_handlers();
    void choose(Side& side);
    Task<> choose_file(Side& side);
    void begin_again();
    Task<> read_and_compare();
    Task<> read(Side& side);
    void show(const Comparison& comparison);
    void add_difference(const Comparison& comparison, std::size_t number, Rows& rows);
    void show_nothing(std::string why);
    void step(bool forwards);
    void select_row(int row);

    Platform& platform_;
    Side left_, right_;
    std::optional<Received_file> received_;
    std::vector<int> difference_rows_;  ///< the row at which each difference begins
    std::string count_text_;
    Task_keeper tasks_;
    Task_keeper dialogs_;
};

}  // namespace kelvane
