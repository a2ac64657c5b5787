#include "frame/main_window.h"

#include <utility>

#include "frame/command_line.h"
#include "frame/settings_files.h"
#include "machines/transfer_options.h"
#include "session/file_names.h"
#include "session/transfer_log.h"

namespace kelvane {

namespace {

constexpr int status_of_second_instance = 3;

constexpr std::string_view first_steps_text =
    "First steps\n\n"
    "1   Configure, Serial port: add your machine, choose its COM number and the device that it "
    "is wired to, then Apply. Tools, Test line tries the cable.\n\n"
    "2   Configure, Select Machine: choose the machine that programs go to.\n\n"
    "3   File, Send: send it a program; or File, Receive: save what it punches out.";

}  // namespace

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
      ToolsMenuItem{Button("ToolsMenuItem0", "Line &monitor"),
                    Button("ToolsMenuItem1", "&Test line"),
                    Button("ToolsMenuItem2", "Transfer &log"),
                    Button("ToolsMenuItem3", "&Save received data as"),
                    Button("ToolsMenuItem4", "Send from a &block"),
                    Button("ToolsMenuItem5", "&Compare"),
                    Button("ToolsMenuItem6", "Ma&nual")},
      AboutMenuItem{Button("AboutMenuItem0", "&Kelvane Lite"),
                    Button("AboutMenuItem1", "&Getting started"),
                    Button("AboutMenuItem2", "&Tape codes and handshakes"),
                    Button("AboutMenuItem3", "&Command line"),
                    Button("AboutMenuItem4", "Trouble on the &line")},
      Timer1(the_platform.loop, 100),
      control(the_platform.loop, the_platform.port, *this, Send_button, Stop_button, status_label,
              state_field),
      tasks(the_platform.loop) {
    status_label.plain = true;
    control.on_running = [this](bool on) { platform.desktop.keep_awake(on); };
    FileMenuItem[2].shortcut = "Ctrl+P";
    first_steps.plain = true;
    first_steps.set_caption(std::string(first_steps_text));
    Open_file_button.set_visible(false);
    Open_file_button.on_click = [this] { platform.desktop.open_file(offered_file_); };
    control.on_title([this](const std::string& title) { show_title(title); });
    control.on_ended = [this](Transfer_record& record) { keep_record(record); };
}

std::vector<Menu> Kelvane_lite_form::menus() {
    std::vector<Menu> all = {{"FileMenu", "&File", FileMenuItem}};
    if (edit_menu) {
        all.push_back(*edit_menu);
    }
    all.push_back({"ConfigMenu", "&Configure", ConfigMenuItem});
    all.push_back({"ToolsMenu", "&Tools", ToolsMenuItem});
    all.push_back({"AboutMenu", "&About", AboutMenuItem});
    return all;
}

Session Kelvane_lite_form::session() {
    return {platform.loop, platform.port, platform.files, platform.desktop, *this, control, state};
}

Task<Message_answer> Kelvane_lite_form::ask(Message message) {
    return platform.message_box.ask(std::move(message));
}

void Kelvane_lite_form::close() {
    if (refused_ || (control.busy() == 0 && !may_close)) {
        unload();
    } else if (!std::exchange(asks_to_close_, true)) {
        tasks.start(ask_and_close());
    }
}

Task<> Kelvane_lite_form::ask_and_close() {
    bool may = true;
    if (control.busy() != 0) {
        const bool stops = co_await may_stop_transfer();
        may = stops;
    }
    if (may && may_close) {
        const bool allowed = co_await may_close();
        may = allowed;
    }
    asks_to_close_ = false;
    if (may) {
        unload();
    }
}

Task<bool> Kelvane_lite_form::may_stop_transfer() {
    const Message question{control.activity_text() + ". Stop it?", std::string(product_name),
                           Message_icon::exclamation, Message_buttons::yes_no};
    const Message_answer answer = co_await ask(question);
    co_return answer == Message_answer::yes;
}

void Kelvane_lite_form::on_load() {
    const auto claimed = platform.desktop.claim_program_directory();
    refused_ = !claimed;
    if (refused_) {
        exit_status = status_of_second_instance;
        tasks.start(refuse(claimed.reason()));
    } else {
        start_up();
    }
}

Task<> Kelvane_lite_form::refuse(std::string reason) {
    const Message busy{
        reason.empty() ? "Kelvane Lite is currently busy.\nTry sending your file later." : reason,
        "Sorry...", Message_icon::critical, Message_buttons::ok};
    co_await ask(busy);
    unload();
}

void Kelvane_lite_form::start_up() {
    parse_command_line(platform.desktop.command_line(), state);
    read_selected_machine(platform.files, state);
    read_default_directories(platform.files, state, platform.file_dialog);
    read_default_file_types(platform.files, state, platform.file_dialog);
    read_page_layout(platform.files, state);
    show_machine();
    if (state.unread_files.contains(file_names::settings)) {
        control.set_warning("Which machine was selected could not be read: it is " +
                            state.IO_device_name + " now");
    }
    first_steps.set_visible(
        !platform.files.exists(platform.files.program_path(file_names::transfer_log)));
    if (state.Command_line == 0 || !state.Command_line_open.empty()) {
        return;
    }
    Timer1.set_enabled(true);
    if (state.Command_line_event == 1 || state.Command_line_event == 6) {
        show();
    }
}

void Kelvane_lite_form::offer_file(const std::string& path) {
    offered_file_ = path;
    Open_file_button.set_visible(!path.empty());
}

void Kelvane_lite_form::show_title(const std::string& transfer) {
    const std::string product(product_name);
    if (!transfer.empty()) {
        first_steps.set_visible(false);
    }
    set_caption(transfer.empty() ? product : transfer + " - " + product);
    ProgressBar1.set_busy(!transfer.empty() && control.direction() == Direction::receive);
}

void Kelvane_lite_form::show_machine() {
    const Loaded_options loaded = load_transfer_options(platform.files, state.IO_device_name);
    control.show_machine(state.IO_device_name);
    control.set_summary(loaded.unreadable.empty() ? summary_of(loaded.options) : loaded.unreadable);
}

void Kelvane_lite_form::keep_record(Transfer_record& record) {
    if (state.job_runs && !job_remark.empty()) {
        record.remarks += (record.remarks.empty() ? "" : "\n") + job_remark;
    }
    record.when = platform.desktop.date_text() + " " + platform.desktop.time_text();
    if (const auto kept = add_to_transfer_log(platform.files, record); !kept) {
        const std::string said = "The transfer log cannot be written: " + kept.reason();
        record.remarks += (record.remarks.empty() ? "" : "\n") + said;
        platform.desktop.tell_standard_error(said);
    } else if (on_logged) {
        on_logged();
    }
    if (record.outcome != Outcome::refused && !control.closing()) {
        platform.desktop.notify(result_sentence(record));
    }
}

void Kelvane_lite_form::on_unload() {
    control.begin_closing();
    Timer1.set_enabled(false);
    tasks.end_all();
    if (refused_) {
        windows().end_program(exit_status);
        return;
    }
    const auto written = write_selected_machine(platform.files, state);
    for (Form* form : other_forms) {
        form->unload();
    }
    if (written) {
        windows().end_program(exit_status);
    } else {
        tasks.start(tell_unwritten_and_end(written.reason()));
    }
}

Task<> Kelvane_lite_form::tell_unwritten_and_end(std::string reason) {
    const Message box{"Cannot write the settings file: " + reason, std::string(product_name),
                      Message_icon::critical, Message_buttons::ok};
    co_await ask(box);
    windows().end_program(exit_status);
}

void Kelvane_lite_form::report_fault(Fault fault) {
    tasks.end_all();
    tasks.start(tell_fault(fault));
}

Task<> Kelvane_lite_form::tell_fault(Fault fault) {
    Transfer_end end;
    end.outcome = Outcome::fault;
    end.box = Message{std::string(fault_text(fault)), std::string(product_name),
                      Message_icon::critical, Message_buttons::ok};
    co_await control.end(std::move(end));
}

}  // namespace kelvane
