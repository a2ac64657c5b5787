// Some minutes in the shop: the operator, the machine, hang-ups, boxes and a failing disk, mixed in
// virtual time. Afterwards, when all is idle and the disk works, a send and a receive must work.

#include <utility>

#include "fuzz_input.h"
#include "shop_whims.h"
#include "support/shop_jobs.h"

namespace {

using namespace kelvane;
using namespace kelvane::testing;

/// The disk: after so many operations so many fail.
struct Disk_whims {
    int works = 0;
    int failing = 0;

    Result<> operation() {
        if (works > 0) {
            --works;
            return {};
        }
        return failing > 0 && failing-- > 0 ? Failure{"Input/output error"} : Result<>();
    }
};

/// Clicks one of the buttons of the forms that are on the screen.
void press(Shop_floor& shop, fuzz::Fuzz_input& input) {
    Program& program = shop.all();
    Kelvane_lite_form& window = shop.window();
    const std::pair<const Form&, Button&> buttons[] = {
        {window, window.Stop_button},
        {window, window.Send_button},
        {window, window.ConfigMenuItem[0]},
        {program.configure_form, program.configure_form.apply_button},
        {program.configure_form, program.configure_form.cancel_button},
        {program.configure_form, program.configure_form.Advanced_button},
        {window, window.ConfigMenuItem[1]},
        {program.select_device_form, program.select_device_form.Command1},
        {window, window.ConfigMenuItem[3]},
        {program.page_layout_form, program.page_layout_form.OK_button},
        {program.page_layout_form, program.page_layout_form.Preview_button},
        {window, window.ConfigMenuItem[4]},
        {program.directories_form, program.directories_form.OK_button},
        {program.resequence_form, program.resequence_form.Resequence_button},
        {program.resequence_form, program.resequence_form.Cancel_button},
        {window, window.AboutMenuItem[1]}};
    const auto chosen = static_cast<std::size_t>(input.choice(int(std::size(buttons))));
    const auto& [form, button] = buttons[chosen];
    if (form.visible()) {
        button.click();
    }
}

/// An Edit or Tools command, or something typed.
void work_in_editor(Shop_floor& shop, fuzz::Fuzz_input& input) {
    const int command = input.choice(Edit_commands::item_count + 8);
    const auto item = static_cast<std::size_t>(command);
    if (command < Edit_commands::item_count) {
        shop.all().edit_commands.EditMenuItem[item].click();
    } else if (command < Edit_commands::item_count + 7) {
        shop.window().ToolsMenuItem[item - Edit_commands::item_count].click();
    } else {
        shop.all().pane.type(u"N1\r");
    }
}

void happen(Shop_floor& shop, fuzz::Fuzz_input& input, Disk_whims& disk) {
    switch (input.choice(8)) {
        case 0:
            shop.window().FileMenuItem[static_cast<std::size_t>(input.choice(6))].click();
            break;
        case 1:
            press(shop, input);
            break;
        case 2:
            shop.machine().sends(std::string(input.text()));
            break;
        case 3:
            shop.machine().sends(input.yes() ? xon : xoff);
            break;
        case 4:
            shop.machine().hang_up();
            break;
        case 5:
            shop.machine().cts = input.yes();
            break;
        case 6:
            disk.works = input.choice(32);
            disk.failing = input.choice(4);
            break;
        default:
            work_in_editor(shop, input);
    }
}

void come_to_rest(Shop_floor& shop) {
    shop.desk.files.on_operation = nullptr;
    shop.desk.file_dialog.otherwise = nullptr;
    shop.machine().cts = true;
    furnish(shop);
    // What was under way may open a window of its own when another has been closed.
    for (int times = 0; times < 3; ++times) {
        for (Form* form : shop.window().other_forms) {
            if (form != &shop.all().comm_form) {
                form->unload();
            }
        }
        until_done(shop);
    }
    shop.pass(2min);
    fuzz::require(shop.idle() && shop.window().tasks.empty(), "all comes to rest");
    shop.state().IO_device_name = "Mill";
    shop.machine().forget();
}

void hours(fuzz::Fuzz_input& input) {
    Disk_whims disk;
    Shop_floor shop;
    furnish(shop);
    fuzz::answer_by(input, shop.desk, "/nc/OTHER.NC");
    shop.desk.files.on_operation = [&disk](const std::string&, const std::string&) {
        return disk.operation();
    };
    shop.start();
    while (!input.rest().empty()) {
        happen(shop, input, disk);
        shop.pass(20ms * input.choice(256));
    }
    come_to_rest(shop);
    shop.program("CHECK.NC", "N1G0\r\n");
    file_job(shop, 0, xon, "CHECK.NC");
    fuzz::require(shop.received().ends_with("N1G0\r\n"), "a send works");
    file_job(shop, 1, job_wire, "CHECK.NC");
    fuzz::require(shop.file("CHECK.NC") == job_wire, "a receive works");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Fuzz_input input(data, std::min<std::size_t>(size, 400));
    hours(input);
    fuzz::require_no_failure();
    return 0;
}
