#include "machines/box_groups.h"

#include <algorithm>

#include "machines/configure_form.h"

namespace kelvane {

std::optional<std::size_t> Box_group::last_set() const {
    const auto found = std::find_if(boxes_.rbegin(), boxes_.rend(),
                                    [](const Check_box* box) { return box->checked(); });
    return found == boxes_.rend()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(boxes_.rend() - found) - 1);
}

void Box_group::clear_all_but(const Check_box& kept) {
    for (Check_box* box : boxes_) {
        if (box != &kept) {
            box->set_checked(false);
        }
    }
}

void Box_group::enable(bool enabled) {
    for (Check_box* box : boxes_) {
        box->set_enabled(enabled);
    }
}

Record_boxes::Record_boxes(configure_IO_lite& form)
    : tape_codes({&form.chk_even, &form.chk_odd, &form.chk_no, &form.chk_EIA}),
      handshakes({&form.chk_none, &form.chk_Xon, &form.chk_RTS, &form.chk_both}),
      ends_of_block(
          {&form.chk_LF, &form.chk_CR, &form.chk_LFCR, &form.chk_CRLF, &form.Chk_custom_EOB}),
      form_(form) {
    for (Check_box* box : {&form.chk_even, &form.chk_odd, &form.chk_no}) {
        box->on_click = [this, box] { ascii_clicked(*box); };
    }
    form.chk_EIA.on_click = [this] { eia_clicked(); };
    for (Check_box* box : handshakes.boxes()) {
        box->on_click = [this, box] {
            if (box->checked()) {
                handshakes.clear_all_but(*box);
            }
        };
    }
    for (Check_box* box : ends_of_block.boxes()) {
        box->on_click = [this, box] { end_of_block_clicked(*box); };
    }
}

void Record_boxes::ascii_clicked(Check_box& box) {
    if (box.checked()) {
        tape_codes.clear_all_but(box);
        (&box == &form_.chk_no ? form_.Opt_8_bits : form_.Opt_7_bits).set_value(true);
    }
    enable_ends_of_block(true);
}

void Record_boxes::eia_clicked() {
    if (!form_.chk_EIA.checked()) {
        return;
    }
    tape_codes.clear_all_but(form_.chk_EIA);
    ends_of_block.clear_all_but(form_.Chk_custom_EOB);
    enable_ends_of_block(false);
    form_.Opt_8_bits.set_value(true);
}

void Record_boxes::enable_ends_of_block(bool enabled) {
    ends_of_block.enable(enabled);
    form_.Custom_EOB_txt.set_enabled(enabled);
}

void Record_boxes::end_of_block_clicked(Check_box& box) {
    if (!box.checked() || form_.chk_EIA.checked()) {
        return;
    }
    ends_of_block.clear_all_but(box);
    form_.Custom_EOB_txt.set_enabled(&box == &form_.Chk_custom_EOB);
}

void Record_boxes::show_end_of_block(End_of_block end_of_block, const std::string& custom) {
    for (int code = 0; Check_box * box : ends_of_block.boxes()) {
        box->set_checked(code == static_cast<int>(end_of_block));
        ++code;
    }
    form_.Custom_EOB_txt.set_text(custom);
    form_.Custom_EOB_txt.set_enabled(end_of_block == End_of_block::custom &&
                                     !form_.chk_EIA.checked());
}

void Record_boxes::guard() {
    if (!form_.chk_EIA.checked() && !ends_of_block.last_set()) {
        form_.chk_LFCR.set_checked(true);
    }
    if (!handshakes.last_set()) {
        form_.chk_Xon.set_checked(true);
    }
    if (!tape_codes.last_set()) {
        form_.chk_even.set_checked(true);
    }
}

}  // namespace kelvane
