#pragma once

#include <functional>
#include <string>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"
#include "resequence/engine.h"
#include "resequence/preview.h"
#include "session/transfer_control.h"

namespace kelvane {

/// The dialog in which the operator says how the program is to be renumbered. Its options are kept
/// in a file from one opening to the next; the maximum is not.
class resequence_form_lite : public Form {
  public:
    /// Both outlive the form.
    resequence_form_lite(Platform& platform, Transfer_control& control);

    Text_box start_txt{"start_txt", "Start with N#"};
    Text_box increment_txt{"increment_txt", "Increment:"};
    Text_box Maximum_txt{"Maximum_txt", "Maximum N#"};  ///< empty or 0: none
    Check_box chk_leading_zeros{"chk_leading_zeros", "leading zeros - # digits:"};
    Text_box digits_txt{"digits_txt"};
    Scroll_bar VScroll1{"VScroll1", 1, 8};  ///< follows `digits_txt`, and moves it
    Text_box N_character_txt{"N_character_txt", R"(Character(s) to use as "N":)"};
    Check_box chk_add_space{"chk_add_space", "Add space after N number"};
    Check_box Chk_Ns_only{"Chk_Ns_only", "Only lines with N-numbers"};
    Check_box chk_t_codes{"chk_t_codes", "Only lines with T-codes"};
    Check_box chk_IDline{"chk_IDline", "Skip program ID line(s)"};
    Check_box chk_blanks{"chk_blanks", "Resequence blank lines"};
    Check_box chk_comments{"chk_comments", "Resequence lines within  (  )"};
    Check_box chk_comments2{"chk_comments2", "Resequence lines within  [  ]"};
    Check_box chk_gotos{"chk_gotos", "Resequence Fanuc GOTOs"};
    Check_box Chk_Dynapath{"Chk_Dynapath", "Decimal N nos.  (Dynapath)"};
    Check_box Chk_OsameasN{"Chk_OsameasN", R"(Treat "O" blocks like "N")"};
    Label Cincinnati_frame{"Cincinnati_frame", "For Cincinnati CNCs"};
    Check_box Chk_HwithW{"Chk_HwithW", R"(Use "H" on lines with "W")"};
    Check_box chk_Add_to{"chk_Add_to", "Add"};
    Text_box Add_to_txt{"Add_to_txt"};
    Label Add_to_label{"Add_to_label", "  to every line"};
    Button Resequence_button{"Resequence_button", "Resequence"};
    Button Cancel_button{"Cancel_button", "Cancel"};
    List_box preview_before{"preview_before", "Before"};
    List_box preview_after{"preview_after", "After"};
    Label preview_note{"preview_note"};

    /// The options as the controls have them now. A greyed box counts as cleared; numbers beyond 15
    /// digits count as the greatest of 16.
    [[nodiscard]] Resequence_options options() const;

    /// 1 while a run is on: no second one starts, and closing the dialog stops the run.
    int running = 0;
    /// Set by a run that has put the renumbered program in its place.
    bool renumbered = false;

    /// The work of the form's buttons, which ends with it.
    Task_keeper tasks;

    /// Cancel, Escape and the close button.
    void close() override;

  protected:
    void on_load() override;
    void on_unload() override;

  private:
    void attach_handlers();
    void set_defaults();
    void read_options_file();
    void write_options_file();
    void update_preview();
    Task<> look_at_whole_program(Resequence_options options);
    Task<bool> let_others_go_first();
    void show_preview(const Resequence_preview& preview);

    Event_loop& loop_;
    Files& files_;
    Transfer_control& control_;
    std::string program_;    ///< that the preview is about; empty while the form is not loaded
    bool unread_ = false;    ///< the options file is there and is not written over
    bool settling_ = false;  ///< the controls are being loaded: they do not move each other
    Task_keeper looking_;    ///< at a long program, with the options as they are now
};

}  // namespace kelvane
