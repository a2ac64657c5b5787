#pragma once

#include <functional>
#include <span>
#include <string>

#include "machines/advanced_form.h"
#include "machines/box_groups.h"
#include "machines/machine_fields.h"
#include "machines/machine_settings.h"
#include "machines/wiring_panel.h"
#include "platform/controls.h"
#include "platform/event_loop.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"
#include "session/shared_state.h"

namespace kelvane {

/// "Configure serial port": edits the list of machines and each machine's record. What it
/// leaves behind are files; it changes neither the selected machine nor the settings of a
/// transfer. Of files that cannot be written or read the operator is told, and what was typed
/// stays; one that is there and cannot be read is never written over.
class configure_IO_lite : public Form {
  public:
    /// `advanced` holds the other half of the record; it is loaded and unloaded with this form.
    /// `state` says which machine is selected in the main window.
    configure_IO_lite(Platform& platform, const Shared_state& state,
                      Configure_IO_advanced_lite& advanced);

    List_box IO_device_lst{"IO_device_lst", "Machines:"};
    Text_box New_name_txt{"New_name_txt", "Add to list:"};
    Button Command2{"Command2", "Add to list:"};
    Button Command3{"Command3", "Delete"};
    /// Says why a typed name cannot become a machine's; empty otherwise.
    Label name_hint{"name_hint"};

    List_box COM_lst{"COM_lst", "COM:"};  ///< port n at position 128 - n
    List_box BAUD_lst{"BAUD_lst", "Baud:"};
    List_box stopbits_lst{"stopbits_lst", "Stop bits:"};
    Label data_bits_label{"data_bits_label", "Data bits:"};
    Option_button Opt_7_bits{"Opt_7_bits", "7 bits"};
    Option_button Opt_8_bits{"Opt_8_bits", "8 bits"};

    Check_box chk_even{"chk_even", "ASCII even"};
    Check_box chk_odd{"chk_odd", "ASCII odd"};
    Check_box chk_no{"chk_no", "ASCII none"};
    Check_box chk_EIA{"chk_EIA", "EIA RS244"};

    Check_box chk_none{"chk_none", "None"};
    Check_box chk_Xon{"chk_Xon", "Xon/Xoff"};
    Check_box chk_RTS{"chk_RTS", "RTS/CTS"};
    Check_box chk_both{"chk_both", "Both"};

    Check_box chk_LF{"chk_LF", "LF"};
    Check_box chk_CR{"chk_CR", "CR"};
    Check_box chk_LFCR{"chk_LFCR", "LF/CR"};
    Check_box chk_CRLF{"chk_CRLF", "CR/LF"};
    Check_box Chk_custom_EOB{"Chk_custom_EOB", "Custom:"};
    Text_box Custom_EOB_txt{"Custom_EOB_txt", "Custom:"};

    Record_boxes boxes{*this};  ///< how the boxes above exclude one another
    Wiring_panel wiring;

    Button Advanced_button{"Advanced_button", "Advanced"};
    Button apply_button{"apply_button", "Apply"};
    Button cancel_button{"cancel_button", "Cancel"};

    Timer Timer1;  ///< 750 ms: no group of boxes stays empty for longer

    [[nodiscard]] int shown_com_port() const;
    /// A number outside 1..128 leaves the list as it is.
    void show_com_port(int port);

    /// Called after Apply, with the machine's name and what could not be stored of its settings.
    std::function<void(const std::string& machine, const Result<>& stored)> on_applied;

    /// Writes the shown record to the file `path` (no settings file for an empty path), then
    /// the list of machines. The list is written whatever becomes of the record.
    Result<> saveit(const std::string& path);
    /// Shows the switchbox select codes of `machine`; none without a file or when it cannot be
    /// read.
    Result<> read_switchbox_codes(const std::string& machine);

  protected:
    void on_load() override;
    void on_unload() override;

  private:
    void load_current_machine();
    void machine_clicked();
    Task<> leave_for(int position);
    void load_clicked_machine();
    /// All that a machine's files hold, as it is shown.
    [[nodiscard]] std::string shown_text();
    void load_machine(Result<std::string> content, int port);
    void load_record(Result<std::string> content, int port);
    void show_fields(const MachineSettings& settings, std::span<const Machine_field> fields);
    [[nodiscard]] MachineSettings shown_settings();

    /// Opens a box over the form, once that is shown.
    void tell(std::string text);
    Task<> told(Message message);
    Task<bool> confirmed(std::string_view text);
    Task<bool> confirm_data_bits();
    Task<> apply();
    void store();
    void name_changed();
    void refuse_name(std::string reason);
    void add_machine();
    Task<> delete_machine();
    /// Says what has come of storing the list.
    void tell_list(const Result<>& stored);
    void delete_machine_at(int position);

    Platform& platform_;
    const Shared_state& state_;
    Configure_IO_advanced_lite& advanced_;
    int machine_ = 0;        ///< position of the machine that is shown
    std::string unchanged_;  ///< `shown_text` of what was read
    Task_keeper tasks_;      ///< questions and messages, which end with the form
};

}  // namespace kelvane
