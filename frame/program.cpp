#include "frame/program.h"

#include "machines/port_devices.h"

namespace kelvane {

namespace {

std::string trouble_of(const Loaded_options& loaded) {
    if (!loaded.unreadable.empty()) {
        return loaded.path + "\n" + loaded.unreadable;
    }
    if (loaded.fault) {
        return std::string(fault_text(*loaded.fault));
    }
    return loaded.unknown_device;
}

}  // namespace

Program::Program(Platform& platform)
    : window(platform),
      comm_form(platform.windows, platform.port),
      code_tables(Build_code_tables()),
      receive(window.session(), code_tables),
      save_received(window.session(), code_tables),
      transfer(window.session(), code_tables, receive),
      listing(platform, window, window.control, window.state),
      advanced_form(platform.windows),
      configure_form(platform, window.state, advanced_form),
      select_device_form(platform, window.state),
      set_directory_form(platform),
      directories_form(platform, window.state, set_directory_form),
      page_layout_form(platform, window, window.state, listing),
      information_form(platform),
      help_form(platform.windows),
      resequence_form(platform, window.control),
      resequence_run(platform, window, window.control, window.state, resequence_form),
      line_watch(platform.port),
      line_monitor_form(platform, line_watch),
      test_line_form(platform, window.control, line_watch, [this] { return selected_line(); }),
      transfer_log_form(platform),
      open_program(platform.loop, platform.files, platform.file_dialog, platform.message_box),
      pane(window.Text1, open_program, platform.desktop, platform.files,
           [this] { return window.control.busy() != 0 || window.control.sending() != 0; }),
      find_bar(platform.loop, pane),
      edit_commands(window.tasks, pane, find_bar),
      start_form(platform, window.control, window.state),
      compare_form(platform),
      commands(window, transfer, listing, resequence_form),
      file_commands(window, commands, open_program),
      command_job(window, commands),
      tool_commands(window, commands, open_program, start_form, compare_form) {
    select_device_form.on_selected = [this] { window.show_machine(); };
    configure_form.on_applied = [this](const std::string& machine, const Result<>& stored) {
        window.show_machine();
        const std::string what =
            stored ? "Stored the settings of " + machine
                   : "The settings of " + machine + " could not be stored: " + stored.reason();
        window.control.set_hint(what + "; transfers go to " + window.state.IO_device_name);
    };
    window.other_forms = {&comm_form,          &advanced_form,     &configure_form,
                          &directories_form,   &page_layout_form,  &select_device_form,
                          &set_directory_form, &information_form,  &help_form,
                          &resequence_form,    &line_monitor_form, &test_line_form,
                          &transfer_log_form,  &start_form,        &compare_form};
    window.on_logged = [this] { transfer_log_form.renew(); };
    window.edit_menu = Menu{"EditMenu",
                            "&Edit",
                            edit_commands.EditMenuItem,
                            {{"RecentMenu", "&Recent programs", edit_commands.RecentMenuItem}}};
    window.may_close = [this] { return open_program.may_be_lost(); };
    transfer.known_content = [this](const std::string& path) {
        return same_path(path, open_program.path()) ? open_program.document().shared_text()
                                                    : nullptr;
    };
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
    window.ToolsMenuItem[0].on_click = [this] { line_monitor_form.show(); };
    window.ToolsMenuItem[1].on_click = [this] { test_line_form.show(); };
    window.ToolsMenuItem[2].on_click = [this] { transfer_log_form.show(); };
    window.ToolsMenuItem[3].on_click = [this] { window.tasks.start(save_received.run()); };
    window.ToolsMenuItem[4].on_click = [this] {
        window.tasks.start(tool_commands.send_from_block());
    };
    window.ToolsMenuItem[5].on_click = [this] { window.tasks.start(tool_commands.compare()); };
    window.ToolsMenuItem[6].on_click = [this] { help_form.show_page(help_contents); };
    information_form.on_link = [this](const std::string& page) { help_form.show_page(page); };
    for (int item = 0; item < static_cast<int>(window.AboutMenuItem.size()); ++item) {
        window.AboutMenuItem[static_cast<std::size_t>(item)].on_click = [this, item] {
            information_form.show_information(item);
        };
    }
}

/// Without handshakes of the driver: what is tested is what crosses the line.
Tested_line Program::selected_line() const {
    const Loaded_options loaded =
        load_transfer_options(window.platform.files, window.state.IO_device_name);
    const Transfer_options& options = loaded.options;
    Tested_line line;
    line.name = options.machine + ": " + com_name(options.com_port) + " (" + options.device +
                "), " + options.line_settings;
    line.port = line_of(options);
    line.port.transparent = true;
    line.on_wire = [this, code = options.TX_code, eob = options.TX_eob](std::string_view text) {
        return code_tables.sent_bytes(std::string(text) + eob, code);
    };
    line.trouble = trouble_of(loaded);
    return line;
}

void Program::start() {
    window.load();
    if (!window.loaded() || window.refused()) {
        return;
    }
    window.show();
    window.tasks.start(open_program.take_up_from_last_run());
    if (!window.state.Command_line_open.empty()) {
        edit_commands.open_file(window.state.Command_line_open);
    }
}

void Program::end_unasked() {
    open_program.keep_for_next_run();
    window.unload();
}

}  // namespace kelvane
