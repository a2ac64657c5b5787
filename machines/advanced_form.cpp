#include "machines/advanced_form.h"

#include <algorithm>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

/// Most controls raise an alarm at the next character after these.
constexpr int accepted_after_xoff = 10;
/// Up to so many are on the wire when an Xoff arrives.
constexpr int on_the_wire = 2;

}  // namespace

Configure_IO_advanced_lite::Configure_IO_advanced_lite(Window_system& windows)
    : Form(windows, "Configure_IO_advanced_lite", "Serial transmit/receive options") {
    for (Text_box* box : {&leader_txt, &Trailer_txt, &Character_delay_txt, &Block_delay_txt,
                          &HS_loop_txt, &Mask_txt, &Input_mask_txt, &skipit_txt, &skip_upto_txt,
                          &Skip_lines_txt, &Switchbox_txt, &Timeout_txt}) {
        box->selects_all_on_focus = true;
    }
    Timeout_txt.accepts_key = [](char key) { return is_digit(key) || key == '\b'; };
    HS_loop_txt.on_change = [this] { show_handshake_hint(); };
    HS_loop_hint.set_visible(false);
    Chk_RX_until_timeout.on_click = [this] { until_timeout_clicked(); };
    Chk_RX_until_aborted.on_click = [this] { until_aborted_clicked(); };
    OK_button.on_click = [this] { hide(); };
}

void Configure_IO_advanced_lite::on_load() {
    // All else is set with every record; these keep their values from one record to the next.
    skip_upto_txt.set_text("");
    Chk_Separate_files.set_checked(false);
    Switchbox_txt.set_text("");
}

void Configure_IO_advanced_lite::set_xoff_delay(int characters) {
    xoff_delay_ = characters;
    show_handshake_hint();
}

void Configure_IO_advanced_lite::show_handshake_hint() {
    constexpr double any = 1e6;
    const double after_xoff =
        on_the_wire + std::clamp(Val(HS_loop_txt.text()), -any, any) + xoff_delay_;
    HS_loop_hint.set_caption("Up to" + Str(static_cast<std::int64_t>(after_xoff)) +
                             " characters follow an Xoff; many controls accept only" +
                             Str(accepted_after_xoff) + ".");
    HS_loop_hint.set_visible(after_xoff > accepted_after_xoff);
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

}  // namespace kelvane
