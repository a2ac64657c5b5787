#include "machines/advanced_form.h"

namespace kelvane {

namespace {

// Most controls raise an alarm at the 11th character after their Xoff; up to two are on the wire
// when it arrives.
constexpr int safe_handshake_check = 8;

}  // namespace

Configure_IO_advanced_lite::Configure_IO_advanced_lite(Window_system& windows)
    : Form(windows, "Configure_IO_advanced_lite", "Serial transmit/receive options") {
    for (Text_box* box : {&leader_txt, &Trailer_txt, &Character_delay_txt, &Block_delay_txt,
                          &HS_loop_txt, &Mask_txt, &Input_mask_txt, &skipit_txt, &skip_upto_txt,
                          &Skip_lines_txt, &Switchbox_txt, &Timeout_txt}) {
        box->selects_all_on_focus = true;
    }
    Timeout_txt.accepts_key = [](char key) { return is_digit(key) || key == '\b'; };
    HS_loop_txt.on_change = [this] {
        HS_loop_hint.set_visible(Val(HS_loop_txt.text()) > safe_handshake_check);
    };
    HS_loop_hint.set_visible(false);
    Chk_RX_until_timeout.on_click = [this] { until_timeout_clicked(); };
    Chk_RX_until_aborted.on_click = [this] { until_aborted_clicked(); };
    OK_button.on_click = [this] { hide(); };
}

void Configure_IO_advanced_lite::on_load() {
    show_settings(MachineSettings());
    Switchbox_txt.set_text("");
}

void Configure_IO_advanced_lite::until_timeout_clicked() {
    if (!Chk_RX_until_timeout.checked()) {
        Chk_RX_until_aborted.set_checked(true);
        return;
    }
    Chk_RX_until_aborted.set_checked(false);
    Timeout_txt.set_enabled(true);
    if (Val(Timeout_txt.text()) <= 0) {
        Timeout_txt.set_text("3");
    }
}

void Configure_IO_advanced_lite::until_aborted_clicked() {
    const bool until_aborted = Chk_RX_until_aborted.checked();
    Chk_RX_until_timeout.set_checked(!until_aborted);
    Timeout_txt.set_enabled(!until_aborted);
}

void Configure_IO_advanced_lite::show_settings(const MachineSettings& settings) {
    leader_txt.set_text(settings.leader);
    Trailer_txt.set_text(settings.trailer);
    chk_ignore_before.set_checked(settings.ignore_before);
    chk_ignore_after.set_checked(settings.ignore_after);
    chk_manreads.set_checked(settings.man_readables);
    HS_loop_txt.set_text(settings.handshake_check);
    chk_auto_code_recognition.set_checked(settings.auto_code_recognition);
    skipit_txt.set_text(settings.skip_starting_with);
    // The boxes first: their handlers mend a time-out that the file may well hold.
    Chk_RX_until_aborted.set_checked(settings.until_aborted);
    Chk_RX_until_timeout.set_checked(!settings.until_aborted);
    Timeout_txt.set_enabled(!settings.until_aborted);
    Timeout_txt.set_text(settings.timeout);
    Mask_txt.set_text(settings.send_mask);
    skip_upto_txt.set_text(settings.skip_up_to);
    Chk_Separate_files.set_value(settings.separate_files);
    Character_delay_txt.set_text(settings.character_delay);
    Chk_delete_blank_lines.set_checked(settings.delete_blank_lines);
    chk_TV_parity.set_checked(settings.tv_parity);
    Block_delay_txt.set_text(settings.block_delay);
    Input_mask_txt.set_text(settings.receive_mask);
    Skip_lines_txt.set_text(settings.skip_lines_containing);
}

void Configure_IO_advanced_lite::put_settings(MachineSettings& settings) const {
    settings.leader = leader_txt.text();
    settings.trailer = Trailer_txt.text();
    settings.ignore_before = chk_ignore_before.checked();
    settings.ignore_after = chk_ignore_after.checked();
    settings.man_readables = chk_manreads.checked();
    settings.handshake_check = HS_loop_txt.text();
    settings.auto_code_recognition = chk_auto_code_recognition.checked();
    settings.skip_starting_with = skipit_txt.text();
    settings.until_aborted = Chk_RX_until_aborted.checked();
    settings.timeout = Timeout_txt.text();
    settings.send_mask = Mask_txt.text();
    settings.skip_up_to = skip_upto_txt.text();
    settings.separate_files = Chk_Separate_files.value();
    settings.character_delay = Character_delay_txt.text();
    settings.delete_blank_lines = Chk_delete_blank_lines.checked();
    settings.tv_parity = chk_TV_parity.checked();
    settings.block_delay = Block_delay_txt.text();
    settings.receive_mask = Input_mask_txt.text();
    settings.skip_lines_containing = Skip_lines_txt.text();
}

}  // namespace kelvane
