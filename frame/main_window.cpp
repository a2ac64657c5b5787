#include "frame/main_window.h"

#include <cstdlib>
#include <utility>

#include "frame/command_line.h"
#include "frame/settings_files.h"

namespace kelvane {

Kelvane_lite_form::Kelvane_lite_form(Platform& the_platform)
    : Form(the_platform.windows, "Kelvane_lite_form", std::string(product_name)),
      platform(the_platform),
      FileMenuItem{
          Button("FileMenuItem0", "&Send"),        Button("FileMenuItem1", "&Receive"),
          Button("FileMenuItem2", "&Print"),       Button("FileMenuItem3", "R&esequence"),
          Button("FileMenuItem4", "&Binary send"), Button("FileMenuItem5", "&Binary receive")},
      ConfigMenuItem{
          Button("ConfigMenuItem0", "&Serial port"), Button("ConfigMenuItem1", "Select &Machine"),
          Button("ConfigMenuItem2", "&Select printer"), Button("ConfigMenuItem3", "&Page layout"),
          Button("ConfigMenuItem4", "&Files && directories")},
      AboutMenuItem{Button("AboutMenuItem0", "&Kelvane Lite"),
                    Button("AboutMenuItem1", "&Getting started"),
                    Button("AboutMenuItem2", "&Tape codes and handshakes"),
                    Button("AboutMenuItem3", "&Command line"),
                    Button("AboutMenuItem4", "Trouble on the &line")},
      Timer1(the_platform.loop, 100),
      Timer5(the_platform.loop, 50),
      Timer6(the_platform.loop, 3000),
      Timer8(the_platform.loop, 1000),
      Timer9(the_platform.loop, 50),
      Timer12(the_platform.loop, 50),
      Timer17(the_platform.loop, 5000),
      exclamation_timer(the_platform.loop, 0),
      status(the_platform.loop, status_label),
      control(the_platform.loop, state, Send_button, Stop_button) {
    status_label.plain = true;
    attach_handlers();
}

void Kelvane_lite_form::set_hooks(Command_hooks hooks) {
    if (!hooks.complete()) {
        std::abort();
    }
    hooks_ = std::move(hooks);
}

std::array<Menu, 3> Kelvane_lite_form::menus() {
    return {Menu{"FileMenu", "&File", FileMenuItem},
            Menu{"ConfigMenu", "&Configure", ConfigMenuItem},
            Menu{"AboutMenu", "&About", AboutMenuItem}};
}

void Kelvane_lite_form::attach_handlers() {
    for (int item = 0; item < static_cast<int>(FileMenuItem.size()); ++item) {
        FileMenuItem[static_cast<std::size_t>(item)].on_click = [this, item] { file_menu(item); };
    }
    ConfigMenuItem[0].on_click = [this] { hooks_.show_configuration(); };
    ConfigMenuItem[1].on_click = [this] { hooks_.show_machine_choice(); };
    ConfigMenuItem[2].on_click = [this] { hooks_.Select_printer(); };
    ConfigMenuItem[3].on_click = [this] { hooks_.Show_page_layout(); };
    ConfigMenuItem[4].on_click = [this] { hooks_.Set_directories(); };
    for (int item = 0; item < static_cast<int>(AboutMenuItem.size()); ++item) {
        AboutMenuItem[static_cast<std::size_t>(item)].on_click = [this, item] {
            hooks_.show_information(item);
        };
    }
    Send_button.on_click = [this] { send_click(); };
    Stop_button.on_click = [this] { stop_click(); };
    Timer1.on_tick = [this] { run_command_line(); };
    for (Timer* delay : {&Timer9, &Timer12, &Timer17, &exclamation_timer}) {
        delay->on_tick = [delay] { delay->set_enabled(false); };
    }
}

void Kelvane_lite_form::on_load() {
    if (platform.desktop.another_instance_runs()) {
        refused_ = true;
        const std::string trouble = platform.desktop.lock_trouble();
        box(trouble.empty() ? "Kelvane Lite is currently busy.\nTry sending your file later."
                            : trouble,
            Message_icon::critical, Message_buttons::ok, "Sorry...");
        unload();
        return;
    }
    start_up();
}

void Kelvane_lite_form::start_up() {
    parse_command_line(platform.desktop.command_line(), state);
    read_selected_machine(platform.files, state);
    read_default_directories(platform.files, state, platform.file_dialog);
    read_default_file_types(platform.files, state, platform.file_dialog);
    read_page_layout(platform.files, state);
    show_machine();
    if (state.Command_line == 0) {
        return;
    }
    Timer1.set_enabled(true);
    if (state.Command_line_event == 1 || state.Command_line_event == 6) {
        show();
    }
}

void Kelvane_lite_form::on_unload() {
    control.begin_closing();
    if (!refused_) {
        shut_down();
    }
    windows().end_program();
}

void Kelvane_lite_form::shut_down() {
    Timer1.set_enabled(false);
    Timer5.set_enabled(false);
    Timer6.set_enabled(false);
    if (const auto written = write_selected_machine(platform.files, state); !written) {
        box("Cannot write the settings file: " + written.reason());
    }
    for (Form* form : hooks_.other_forms) {
        form->unload();
    }
}

void Kelvane_lite_form::Enable_buttons() {
    Send_button.set_enabled(true);
    Stop_button.set_enabled(true);
}

void Kelvane_lite_form::Disable_buttons() {
    Send_button.set_enabled(false);
    Stop_button.set_enabled(false);
}

void Kelvane_lite_form::Delay(int count) {
    if (count <= 0) {
        return;
    }
    Timer17.set_interval(count);
    Timer17.set_enabled(true);
    while (Timer17.enabled()) {
        platform.loop.process_events();
    }
}

void Kelvane_lite_form::wait_for_timer(Timer& timer) {
    if (timer.interval() <= 0) {
        return;
    }
    timer.set_enabled(true);
    while (timer.enabled() && state.escape != 1) {
        platform.loop.process_events();
    }
    timer.set_enabled(false);
}

void Kelvane_lite_form::reset_transfer_display() {
    Enable_buttons();
    show_text({});
    set_progress(0);
}

void Kelvane_lite_form::report_fault(Fault fault) {
    platform.port.close();
    Timer5.set_enabled(false);
    Timer6.set_enabled(false);
    state.busy = 0;
    state.sending = 0;
    state.receiving = 0;
    reset_transfer_display();
    status.end();
    box(std::string(fault_text(fault)));
}

void Kelvane_lite_form::show_machine() {
    status.set_machine(state.IO_device_name);
}

void Kelvane_lite_form::send_click() {
    if (state.Stopped != 0) {
        // A paused send goes on to its end; the press of Stop that paused it no longer counts.
        state.IOsend_cancel = 0;
    }
    state.Sendit_now = 1;
    state.Stopped = 0;
    state.Xoff = 0;
    Stop_button.set_caption("Stop");
}

void Kelvane_lite_form::stop_click() {
    state.IOsend_cancel = 1;
    state.Sendit_now = 0;
    if (state.Stopped == 0) {
        state.Stopped = 1;
        state.Xoff = 1;
        Stop_button.set_caption("Reset");
    } else {
        state.Stopped = 0;
        state.escape = 1;
        Stop_button.set_caption("Stop");
    }
}

}  // namespace kelvane
