#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "machines/advanced_form.h"
#include "machines/machine_settings.h"
#include "machines/port_wiring.h"
#include "platform/controls.h"
#include "platform/event_loop.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "session/shared_state.h"

namespace kelvane {

/// "Configure serial port": edits the list of machines and each machine's record. What it leaves
/// behind are files; it changes neither the selected machine nor the settings of a transfer. Files
/// that cannot be read or written are passed over without a message, the old ones staying whole.
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

    Check_box chk_even{"chk_even", std::string(tape_code_names[ascii_even])};
    Check_box chk_odd{"chk_odd", std::string(tape_code_names[ascii_odd])};
    Check_box chk_no{"chk_no", std::string(tape_code_names[ascii_no_parity])};
    Check_box chk_EIA{"chk_EIA", std::string(tape_code_names[eia])};

    Check_box chk_none{"chk_none", std::string(handshake_names[handshake_none])};
    Check_box chk_Xon{"chk_Xon", std::string(handshake_names[xon_xoff])};
    Check_box chk_RTS{"chk_RTS", std::string(handshake_names[rts_cts])};
    Check_box chk_both{"chk_both", std::string(handshake_names[handshake_both])};

    Check_box chk_LF{"chk_LF", std::string(end_of_block_names[eob_lf])};
    Check_box chk_CR{"chk_CR", std::string(end_of_block_names[eob_cr])};
    Check_box chk_LFCR{"chk_LFCR", std::string(end_of_block_names[eob_lf_cr])};
    Check_box chk_CRLF{"chk_CRLF", std::string(end_of_block_names[eob_cr_lf])};
    Check_box Chk_custom_EOB{"Chk_custom_EOB", std::string(end_of_block_names[eob_custom])};
    Text_box Custom_EOB_txt{"Custom_EOB_txt", "Custom:"};

    // --- The device behind the COM number. Changes are kept until Apply.
    Text_box Device_txt{"Device_txt", "&Wired to:"};
    List_box Device_lst{"Device_lst", "Devices &found now:"};
    /// What is to be said of the device: that it is not there, or that none is.
    Label device_hint{"device_hint"};

    Button Advanced_button{"Advanced_button", "Advanced"};
    Button apply_button{"apply_button", "Apply"};
    Button cancel_button{"cancel_button", "Cancel"};

    Timer Timer1;        ///< 750 ms: no group of boxes stays empty for longer
    Timer device_timer;  ///< 2 s: the serial devices found now

    /// Writes the shown record to the file `path` (no settings file for an empty path), then the
    /// list of machines.
    void saveit(const std::string& path);
    /// Shows the switchbox select codes of `machine`; none without a file.
    void read_switchbox_codes(const std::string& machine);

  protected:
    void on_load() override;
    void on_unload() override;

  private:
    void attach_groups();
    void ascii_clicked(Check_box& box);
    void eia_clicked();
    void end_of_block_clicked(Check_box& box);
    void enable_end_of_block(bool enabled);
    void guard_groups();

    void load_current_machine();
    void machine_clicked();
    void load_record(Result<std::string> content, int port);
    void show_settings(const MachineSettings& settings, int lines_read);
    void show_end_of_block(const MachineSettings& settings);
    [[nodiscard]] MachineSettings shown_settings() const;
    [[nodiscard]] int shown_com_port() const;

    [[nodiscard]] bool confirm_data_bits();
    void apply();
    void name_changed();
    void add_machine();
    void delete_machine();

    void attach_wiring();
    void show_wiring();
    void device_changed();
    void refresh_devices();
    void show_found_device();

    Platform& platform_;
    const Shared_state& state_;
    Configure_IO_advanced_lite& advanced_;
    std::array<Check_box*, 4> code_boxes_ = {&chk_even, &chk_odd, &chk_no, &chk_EIA};
    std::array<Check_box*, 4> handshake_boxes_ = {&chk_none, &chk_Xon, &chk_RTS, &chk_both};
    std::array<Check_box*, 5> end_of_block_boxes_ = {&chk_LF, &chk_CR, &chk_LFCR, &chk_CRLF,
                                                     &Chk_custom_EOB};
    std::vector<Serial_device> found_;
    Port_wiring wiring_;
};

}  // namespace kelvane
