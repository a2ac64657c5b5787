// Some minutes in the shop: the operator, the machine, hang-ups, boxes and a failing disk, mixed in
// virtual time. Afterwards, when all is idle and the disk works, a send and a receive must work.

#include "fuzz_input.h"
#include "support/shop_jobs.h"

namespace {

using namespace kelvane;
using namespace kelvane::testing;

/// Answers boxes as the input says, and the operations of the disk.
struct Whims {
    fuzz::Fuzz_input& input;
    int failing = 0;  ///< so many operations fail from now on

    Message_answer answer(const Message& message) {
        const bool yes = input.yes();
        switch (message.buttons) {
            case Message_buttons::yes_no:
                return yes ? Message_answer::yes : Message_answer::no;
            case Message_buttons::ok_cancel:
                return yes ? Message_answer::ok : Message_answer::cancel;
            case Message_buttons::save_discard_cancel:
                return yes ? Message_answer::save : Message_answer::cancel;
            default:
                return Message_answer::ok;
        }
    }
    Result<> operation() {
        return failing > 0 && failing-- > 0 ? Failure{"Input/output error"} : Result<>();
    }
};

void press(Shop_floor& shop, fuzz::Fuzz_input& input) {
    Program& program = shop.all();
    Button* const buttons[] = {&shop.window().Stop_button,
                               &shop.window().Send_button,
                               &shop.window().ConfigMenuItem[0],
                               &program.configure_form.apply_button,
                               &program.configure_form.cancel_button,
                               &program.configure_form.Advanced_button,
                               &shop.window().ConfigMenuItem[1],
                               &program.select_device_form.Command1,
                               &shop.window().ConfigMenuItem[3],
                               &program.page_layout_form.OK_button,
                               &program.page_layout_form.Preview_button,
                               &shop.window().ConfigMenuItem[4],
                               &program.directories_form.OK_button,
                               &program.resequence_form.Resequence_button,
                               &program.resequence_form.Cancel_button,
                               &shop.window().ToolsMenuItem[0],
                               &shop.window().ToolsMenuItem[1],
                               &shop.window().AboutMenuItem[1]};
    const auto button = static_cast<std::size_t>(input.choice(int(std::size(buttons))));
    buttons[button]->click();
}

void happen(Shop_floor& shop, fuzz::Fuzz_input& input, Whims& whims) {
    static const std::string names[] = {"PART.NC", "OTHER.NC", "SUB.NC", "NEW.NC"};
    switch (input.choice(8)) {
        case 0:
            shop.pick(static_cast<std::size_t>(input.choice(6)),
                      names[static_cast<std::size_t>(input.choice(4))]);
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
            whims.failing = input.choice(4);
            break;
        default:
            shop.desk.file_dialog.answers.push_back({File_purpose::save, "/nc/KEPT.NC"});
            shop.all()
                .edit_commands
                .EditMenuItem[static_cast<std::size_t>(input.choice(Edit_commands::item_count))]
                .click();
            shop.all().open_program.type(u"N1\r");
    }
    shop.desk.file_dialog.answers.clear();
}

void come_to_rest(Shop_floor& shop) {
    shop.desk.files.on_operation = nullptr;
    shop.machine().cts = true;
    furnish(shop);
    for (Form* form : shop.window().other_forms) {
        if (form != &shop.all().comm_form) {
            form->unload();
        }
    }
    until_done(shop);
    shop.pass(2min);
    shop.state().IO_device_name = "Mill";
    shop.machine().forget();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Fuzz_input input(data, std::min<std::size_t>(size, 400));
    Shop_floor shop;
    furnish(shop);
    Whims whims{input};
    shop.boxes().otherwise = [&whims](const Message& message) { return whims.answer(message); };
    shop.desk.files.on_operation = [&whims](const std::string&, const std::string&) {
        return whims.operation();
    };
    shop.start();
    while (!input.rest().empty()) {
        happen(shop, input, whims);
        shop.pass(20ms * input.choice(256));
    }
    come_to_rest(shop);
    fuzz::require(shop.idle() && shop.window().tasks.empty(), "all comes to rest");
    shop.program("CHECK.NC", "N1G0\r\n");
    file_job(shop, 0, xon, "CHECK.NC");
    fuzz::require(shop.received().ends_with("N1G0\r\n"), "a send works");
    file_job(shop, 1, job_wire, "CHECK.NC");
    fuzz::require(shop.file("CHECK.NC") == job_wire, "a receive works");
    return 0;
}
