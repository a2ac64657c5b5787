#pragma once

#include "platform/controls.h"
#include "platform/form.h"

namespace kelvane {

/// "Serial transmit/receive options": the part of a machine's record that is not about the port. It
/// reads and writes no file. The configuration form loads it hidden, fills it, shows it, reads it
/// and unloads it; its values live only in its controls.
class Configure_IO_advanced_lite : public Form {
  public:
    explicit Configure_IO_advanced_lite(Window_system& windows);

    // --- When sending ...
    Text_box leader_txt{"leader_txt", "Leader:"};
    Text_box Trailer_txt{"Trailer_txt", "Trailer:"};
    Check_box chk_manreads{"chk_manreads", "Man-readables"};
    Text_box Character_delay_txt{"Character_delay_txt", "Delay between characters:"};
    Text_box Block_delay_txt{"Block_delay_txt", "Delay between blocks:"};
    Text_box HS_loop_txt{"HS_loop_txt", "Check handshake every"};
    /// Shown while more characters may follow an Xoff than a control takes; says how many.
    Label HS_loop_hint{"HS_loop_hint"};
    Text_box Mask_txt{"Mask_txt", "Mask out these characters:"};
    Text_box skipit_txt{"skipit_txt", "Skip data that starts with:"};
    Text_box Skip_lines_txt{"Skip_lines_txt", "Skip lines that contain:"};
    Check_box Chk_delete_blank_lines{"Chk_delete_blank_lines", "Delete blank lines"};
    Check_box chk_TV_parity{"chk_TV_parity", "Add spaces for vertical (TV) parity"};
    Text_box Switchbox_txt{"Switchbox_txt", "Switchbox select codes:"};

    // --- When receiving ....
    Check_box Chk_RX_until_timeout{"Chk_RX_until_timeout", "Receive until timeout of:"};
    Text_box Timeout_txt{"Timeout_txt", "Receive until timeout of:"};
    Check_box Chk_RX_until_aborted{"Chk_RX_until_aborted", "Receive until I/O is aborted"};
    Check_box Chk_Separate_files{"Chk_Separate_files", "Separate files by O-numbers"};
    Check_box chk_auto_code_recognition{"chk_auto_code_recognition", "Use auto code recognition"};
    Check_box chk_ignore_before{"chk_ignore_before", "Ignore data before first EOB"};
    Check_box chk_ignore_after{"chk_ignore_after", "Ignore data after last EOB"};
    Text_box skip_upto_txt{"skip_upto_txt", "Skip data up to && including:"};
    Text_box Input_mask_txt{"Input_mask_txt", "Mask out these characters:"};

    Button OK_button{"OK_button", "OK"};

    /// On the machine's device a lone Xoff is seen so many characters late.
    void set_xoff_delay(int characters);
    /// The operator's closing keeps the values, as OK does.
    void close() override { hide(); }

  protected:
    void on_load() override;

  private:
    void show_handshake_hint();
    void until_timeout_clicked();
    void until_aborted_clicked();

    int xoff_delay_ = 0;
};

}  // namespace kelvane
