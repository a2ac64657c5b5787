#include "frame/program.h"

namespace kelvane {

Program::Program(Platform& platform)
    : window(platform),
      comm_form(platform.windows, platform.port),
      code_tables(Build_code_tables()),
      receive(window.session(), code_tables),
      transfer(window.session(), code_tables, receive),
      listing(platform, window, window.control, window.state),
      advanced_form(platform.windows),
      configure_form(platform, window.state, advanced_form),
      select_device_form(platform, window.state),
      set_directory_form(platform),
      directories_form(platform, window.state, set_directory_form),
      page_layout_form(platform, window, window.state, listing),
      information_form(platform.windows),
      resequence_form(platform.windows, platform.files, window.control),
      resequence_run(platform, window, window.control, window.state, resequence_form),
      commands(window, transfer, listing, resequence_form),
      file_commands(window, commands),
      command_job(window, commands) {
    select_device_form.on_selected = [this] { window.show_machine(); };
    window.other_forms = {&comm_form,          &advanced_form,    &configure_form,
                          &directories_form,   &page_layout_form, &select_device_form,
                          &set_directory_form, &information_form, &resequence_form};
    join_menus();
    comm_form.load();
}

void Program::join_menus() {
    window.Timer1.on_tick = [this] { command_job.start(); };
    for (int item = 0; item < static_cast<int>(window.FileMenuItem.size()); ++item) {
        window.FileMenuItem[static_cast<std::size_t>(item)].on_click = [this, item] {
            file_commands.start(item);
        };
    }
    window.ConfigMenuItem[0].on_click = [this] { configure_form.show(); };
    window.ConfigMenuItem[1].on_click = [this] { select_device_form.show(); };
    window.ConfigMenuItem[2].on_click = [this] {
        window.tasks.start(window.platform.printer.select_printer());
    };
    window.ConfigMenuItem[3].on_click = [this] {
        window.tasks.start(page_layout_form.show_modal());
    };
    window.ConfigMenuItem[4].on_click = [this] {
        window.tasks.start(directories_form.show_modal());
    };
    for (int item = 0; item < static_cast<int>(window.AboutMenuItem.size()); ++item) {
        window.AboutMenuItem[static_cast<std::size_t>(item)].on_click = [this, item] {
            information_form.show_information(item);
        };
    }
}

void Program::start() {
    window.load();
    if (window.loaded() && !window.refused()) {
        window.show();
    }
}

}  // namespace kelvane
