#include "program/program.h"

#include "transmit/scratch_copy.h"

namespace kelvane {

Program::Program(Platform& platform)
    : window(platform),
      comm_form(platform.windows, platform.port),
      code_tables(Build_code_tables()),
      transfer(window, code_tables),
      receive_loop(window, code_tables),
      listing(window, platform.printer),
      advanced_form(platform.windows),
      configure_form(platform, window.state, advanced_form),
      select_device_form(platform, window.state),
      set_directory_form(platform),
      directories_form(platform, window.state, set_directory_form),
      page_layout_form(window, platform.printer, listing),
      information_form(platform.windows),
      resequence_form(platform.windows, platform.files, window.state),
      resequence_run(window, resequence_form),
      tasks(platform.loop) {
    select_device_form.on_selected = [this] { window.show_machine(); };
    window.set_hooks(hooks());
    comm_form.load();
}

Command_hooks Program::hooks() {
    Command_hooks hooks;
    hooks.Start_transfer = [this](int mode) { transfer.Start_transfer(mode); };
    hooks.Print_listing = [this] { listing.Print_listing(); };
    hooks.Check_receive = [this] { return receive_loop.Check_receive(); };
    hooks.Make_scratchpad_copy = [this](const std::string& path) {
        return Make_scratchpad_copy(window, path);
    };
    hooks.show_resequence = [this] { tasks.start(resequence_form.show_modal()); };
    hooks.show_configuration = [this] { configure_form.show(); };
    hooks.show_machine_choice = [this] { select_device_form.show(); };
    hooks.Select_printer = [this] { tasks.start(window.platform.printer.select_printer()); };
    hooks.Show_page_layout = [this] { tasks.start(page_layout_form.show_modal()); };
    hooks.Set_directories = [this] { tasks.start(directories_form.show_modal()); };
    hooks.show_information = [this](int item) { information_form.show_information(item); };
    hooks.other_forms = {&comm_form,          &advanced_form,    &configure_form,
                         &directories_form,   &page_layout_form, &select_device_form,
                         &set_directory_form, &information_form, &resequence_form};
    return hooks;
}

void Program::start() {
    window.load();
    if (window.loaded()) {
        window.show();
    }
}

}  // namespace kelvane
