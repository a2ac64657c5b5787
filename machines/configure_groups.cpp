#include "machines/configure_form.h"

// The groups of boxes of which one at most is set, and the guard that keeps them from staying
// empty.

namespace kelvane {

namespace {

template <std::size_t Size>
bool none_checked(const std::array<Check_box*, Size>& boxes) {
    for (const Check_box* box : boxes) {
        if (box->checked()) {
            return false;
        }
    }
    return true;
}

template <std::size_t Size>
void clear_others(const std::array<Check_box*, Size>& boxes, const Check_box& kept) {
    for (Check_box* box : boxes) {
        if (box != &kept) {
            box->set_checked(false);
        }
    }
}

}  // namespace

void configure_IO_lite::attach_groups() {
    for (Check_box* box : {&chk_even, &chk_odd, &chk_no}) {
        box->on_click = [this, box] { ascii_clicked(*box); };
    }
    chk_EIA.on_click = [this] { eia_clicked(); };
    for (Check_box* box : handshake_boxes_) {
        box->on_click = [this, box] {
            if (box->checked()) {
                clear_others(handshake_boxes_, *box);
            }
        };
    }
    for (Check_box* box : end_of_block_boxes_) {
        box->on_click = [this, box] { end_of_block_clicked(*box); };
    }
    Opt_7_bits.join(Opt_8_bits);
    Timer1.on_tick = [this] { guard_groups(); };
}

void configure_IO_lite::ascii_clicked(Check_box& box) {
    if (box.checked()) {
        clear_others(code_boxes_, box);
        (&box == &chk_no ? Opt_8_bits : Opt_7_bits).set_value(true);
    }
    enable_end_of_block(true);
}

void configure_IO_lite::eia_clicked() {
    if (!chk_EIA.checked()) {
        return;
    }
    clear_others(code_boxes_, chk_EIA);
    clear_others(end_of_block_boxes_, Chk_custom_EOB);
    enable_end_of_block(false);
    Opt_8_bits.set_value(true);
}

void configure_IO_lite::enable_end_of_block(bool enabled) {
    for (Check_box* box : end_of_block_boxes_) {
        box->set_enabled(enabled);
    }
    Custom_EOB_txt.set_enabled(enabled);
}

void configure_IO_lite::end_of_block_clicked(Check_box& box) {
    if (!box.checked() || chk_EIA.checked()) {
        return;
    }
    clear_others(end_of_block_boxes_, box);
    Custom_EOB_txt.set_enabled(&box == &Chk_custom_EOB);
}

void configure_IO_lite::guard_groups() {
    if (!chk_EIA.checked() && none_checked(end_of_block_boxes_)) {
        chk_LFCR.set_checked(true);
    }
    if (none_checked(handshake_boxes_)) {
        chk_Xon.set_checked(true);
    }
    if (none_checked(code_boxes_)) {
        chk_even.set_checked(true);
    }
}

}  // namespace kelvane
