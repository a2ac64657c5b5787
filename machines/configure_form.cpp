#include "machines/configure_form.h"

#include <algorithm>
#include <utility>

#include "machines/machine_fields.h"
#include "machines/machine_files.h"
#include "session/machine_names.h"

namespace kelvane {

namespace {

constexpr int guard_interval = 750;
// Ports that a machine without a readable file shows, at the form's start and after a click.
constexpr int start_port = 1;
constexpr int clicked_port = 113;

constexpr std::string_view illegal_title = "This setting is illegal!";
constexpr std::string_view illegal_eight_bits =
    "Caution! The setting of 8 data bits + EVEN pariy or 8 data bits + ODD parity is illegal.\n"
    "In most cases, you should set 7 data bits + even parity (or) 7 data bits + odd parity\n"
    "We recommend that you use 8 data bits only if the tape code setting is NO parity or EIA\n"
    "Continue with this setting non-standard setting anyway?";
constexpr std::string_view illegal_seven_bits =
    "Caution! The setting of 7 data bits + NO pariy or 7 data bits + EIA code is illegal.\n"
    "In most cases, you should set 8 data bits + ASCII No parity (or) 8 data bits + EIA tape code\n"
    "We recommend that you use 7 data bits only if the tape code setting is ASCII Even parity or "
    "ASCII Odd parity\n"
    "Continue with this setting non-standard setting anyway?";

/// Adding a machine writes a file of its bare name into the current directory. That must be
/// possible, must not hit a machine's settings should that directory be the program's own, and a
/// file that is there already must be such a settings file.
bool may_write_bare_file(const Files& files, const std::string& name) {
    const std::string_view own_file = file_names::bare(file_names::port_settings);
    if (!can_be_file_name(name) || upper_case(name).starts_with(upper_case(own_file))) {
        return false;
    }
    constexpr std::size_t enough = 64;
    const std::string start = files.read_start(name, enough).value_or("");
    return !files.exists(name) ||
           (start.starts_with("COM") && start.find("\nBAUD") != std::string::npos);
}

}  // namespace

configure_IO_lite::configure_IO_lite(Platform& platform, const Shared_state& state,
                                     Configure_IO_advanced_lite& advanced)
    : Form(platform.windows, "configure_IO_lite", "Configure serial port"),
      wiring(platform, *this),
      Timer1(platform.loop, guard_interval),
      platform_(platform),
      state_(state),
      advanced_(advanced),
      tasks_(platform.loop) {
    Opt_7_bits.join(Opt_8_bits);
    Timer1.on_tick = [this] { boxes.guard(); };
    IO_device_lst.on_mouse_down = [this] { machine_clicked(); };
    New_name_txt.on_enter = [this] { add_machine(); };
    New_name_txt.on_change = [this] { name_changed(); };
    name_hint.plain = true;
    Command2.on_click = [this] { add_machine(); };
    Command3.on_click = [this] { tasks_.start(delete_machine()); };
    Advanced_button.on_click = [this] {
        advanced_.set_xoff_delay(wiring.xoff_delay());
        advanced_.show();
    };
    apply_button.on_click = [this] { tasks_.start(apply()); };
    cancel_button.on_click = [this] { unload(); };
    for (const std::string_view baud : baud_rates) {
        BAUD_lst.add(std::string(baud));
    }
    for (const std::string_view stop_bits : stop_bit_choices) {
        stopbits_lst.add(std::string(stop_bits));
    }
}

void configure_IO_lite::on_load() {
    advanced_.load();
    std::vector<std::string> ports;
    for (int port = highest_com_port; port >= lowest_com_port; --port) {
        ports.push_back(Str(port));
    }
    COM_lst.set_items(std::move(ports));
    New_name_txt.set_text("");
    auto machines = machine_list_items(platform_.files);
    if (!machines) {
        unload();
        tell("Cannot read the list of machines.\n" + machines.reason());
        return;
    }
    IO_device_lst.set_items(*std::move(machines));
    load_current_machine();
    wiring.begin();
    Timer1.set_enabled(true);
}

void configure_IO_lite::on_unload() {
    tasks_.end_all();
    Timer1.set_enabled(false);
    wiring.end();
    advanced_.unload();
}

void configure_IO_lite::load_current_machine() {
    const int position = machine_position(IO_device_lst.items(), state_.IO_device_name);
    IO_device_lst.select(position);
    auto content =
        read_machine_file(platform_.files, named_port_settings_name(IO_device_lst.selected_text()));
    if (content.missing()) {
        IO_device_lst.select(0);
        content = read_machine_file(platform_.files, port_settings_name(default_machine));
    }
    load_machine(std::move(content), start_port);
}

void configure_IO_lite::machine_clicked() {
    const int picked = IO_device_lst.selected();
    if (shown_text() != unchanged_) {
        IO_device_lst.select(machine_);
        tasks_.start(leave_for(picked));
    } else {
        load_clicked_machine();
    }
}

Task<> configure_IO_lite::leave_for(int position) {
    const Message question{"The settings of " + IO_device_lst.selected_text() +
                               " have been changed and not applied.\nDrop the changes?",
                           std::string(product_name), Message_icon::exclamation,
                           Message_buttons::yes_no};
    const Message_answer answer = co_await platform_.message_box.ask(question);
    if (answer == Message_answer::yes) {
        IO_device_lst.select(position);
        load_clicked_machine();
    }
}

void configure_IO_lite::load_clicked_machine() {
    const std::string machine = IO_device_lst.selected_text();
    load_machine(read_machine_file(platform_.files, port_settings_name(machine)), clicked_port);
}

/// Shows the selected machine with the content of its settings file. What could not be read is not
/// there to be applied.
void configure_IO_lite::load_machine(Result<std::string> content, int port) {
    const std::string machine = IO_device_lst.selected_text();
    const auto codes = read_switchbox_codes(machine);
    const std::string reason = content.unreadable() ? content.reason() : codes.reason();
    load_record(std::move(content), port);
    machine_ = IO_device_lst.selected();
    unchanged_ = shown_text();
    apply_button.set_enabled(reason.empty());
    if (!reason.empty()) {
        tell("Cannot read the settings of " + machine + ".\n" + reason);
    }
}

Result<> configure_IO_lite::read_switchbox_codes(const std::string& machine) {
    const auto codes = read_switchbox_text(platform_.files, machine);
    advanced_.Switchbox_txt.set_text(codes.value_or(""));
    return codes ? Result<>() : codes.failure();
}

/// Resets every field, with `port` for the COM number, and takes the file's lines over that.
void configure_IO_lite::load_record(Result<std::string> content, int port) {
    MachineSettings settings;
    settings.com_port = port;
    settings.skip_up_to = advanced_.skip_upto_txt.text();
    settings.separate_files = advanced_.Chk_Separate_files.value();
    show_fields(settings, machine_fields);
    Text_reader reader(std::move(content));
    const std::size_t lines = read_machine_settings(reader, Old_port_form::list_position, settings);
    show_fields(settings, machine_fields.first(lines));
    wiring.show();
}

/// What the boxes' handlers bring about stays where the file had no line of its own for it.
void configure_IO_lite::show_fields(const MachineSettings& settings,
                                    std::span<const Machine_field> fields) {
    for (const Machine_field& field : fields) {
        field.control.show({*this, advanced_}, settings);
    }
}

MachineSettings configure_IO_lite::shown_settings() {
    MachineSettings settings;
    for (const Machine_field& field : machine_fields) {
        field.control.take({*this, advanced_}, settings);
    }
    return settings;
}

std::string configure_IO_lite::shown_text() {
    return machine_settings_text(shown_settings()) + advanced_.Switchbox_txt.text();
}

int configure_IO_lite::shown_com_port() const {
    return highest_com_port - std::max(COM_lst.selected(), 0);
}

void configure_IO_lite::show_com_port(int port) {
    if (port >= lowest_com_port && port <= highest_com_port) {
        COM_lst.select(highest_com_port - port);
    }
}

Result<> configure_IO_lite::saveit(const std::string& path) {
    if (advanced_.Timeout_txt.text().empty()) {
        advanced_.Timeout_txt.set_text(stored_timeout(""));
    }
    const auto& items = IO_device_lst.items();
    auto record = path.empty()
                      ? Result<>()
                      : platform_.files.replace(path, machine_settings_text(shown_settings()));
    auto list = write_machine_list(platform_.files, {items.begin() + 1, items.end()});
    return record ? list : record;
}

void configure_IO_lite::tell(std::string text) {
    tasks_.start(told(
        {std::move(text), std::string(product_name), Message_icon::critical, Message_buttons::ok}));
}

Task<> configure_IO_lite::told(Message message) {
    while (loaded() && !visible()) {
        co_await platform_.loop.next();
    }
    co_await platform_.message_box.ask(message);
}

Task<bool> configure_IO_lite::confirmed(std::string_view text) {
    const Message question{std::string(text), std::string(illegal_title), Message_icon::exclamation,
                           Message_buttons::yes_no};
    const Message_answer answer = co_await platform_.message_box.ask(question);
    co_return answer == Message_answer::yes;
}

Task<bool> configure_IO_lite::confirm_data_bits() {
    const bool parity = chk_even.checked() || chk_odd.checked();
    const bool none = chk_no.checked() || chk_EIA.checked();
    if (Opt_8_bits.value() && parity) {
        co_return co_await confirmed(illegal_eight_bits);
    }
    if (Opt_7_bits.value() && none) {
        co_return co_await confirmed(illegal_seven_bits);
    }
    co_return true;
}

Task<> configure_IO_lite::apply() {
    const bool goes_on = co_await confirm_data_bits();
    if (goes_on && loaded()) {
        store();
    }
}

void configure_IO_lite::store() {
    Files& files = platform_.files;
    const bool is_default = IO_device_lst.selected() <= 0;
    const std::string machine = is_default ? default_machine : IO_device_lst.selected_text();
    const std::string name =
        is_default ? port_settings_name(machine) : named_port_settings_name(machine);
    if (const auto old = read_machine_file(files, name); old.unreadable()) {
        tell("Cannot read the settings of " + machine + ".\n" + old.reason());
        return;
    }
    if (const auto wired = wiring.store(); !wired) {
        tell("Cannot store what the COM numbers are wired to.\n" + wired.reason());
        return;
    }
    Text_writer switchbox;
    switchbox.line(one_line(advanced_.Switchbox_txt.text()));
    const auto saved = saveit(machine_file_path(files, name).value_or(""));
    const auto codes = write_machine_file(files, switchbox_name(machine), switchbox.text());
    unload();
    if (on_applied) {
        on_applied(machine, saved ? codes : saved);
    }
}

void configure_IO_lite::name_changed() {
    const std::string& name = New_name_txt.text();
    name_hint.set_caption(name.empty() ? "" : fault_of_machine_name(name));
}

void configure_IO_lite::refuse_name(std::string reason) {
    tasks_.start(told(
        {std::move(reason), "List entry error", Message_icon::exclamation, Message_buttons::ok}));
}

void configure_IO_lite::add_machine() {
    const std::string name = New_name_txt.text();
    if (name.empty()) {
        return;
    }
    const auto& items = IO_device_lst.items();
    if (std::any_of(items.begin(), items.end(),
                    [&](const std::string& item) { return same_machine_name(item, name); })) {
        refuse_name("I/O device name is already in the list");
        return;
    }
    if (const std::string fault = fault_of_machine_name(name); !fault.empty()) {
        refuse_name(fault);
        return;
    }
    IO_device_lst.add(name);
    New_name_txt.set_text("");
    IO_device_lst.select(static_cast<int>(IO_device_lst.count()) - 1);
    machine_ = IO_device_lst.selected();
    tell_list(saveit(may_write_bare_file(platform_.files, name) ? name : ""));
}

void configure_IO_lite::tell_list(const Result<>& stored) {
    if (!stored) {
        name_hint.set_caption("The list could not be stored: " + stored.reason());
    }
}

Task<> configure_IO_lite::delete_machine() {
    const int position = IO_device_lst.selected();
    if (position <= 0) {
        co_return;
    }
    const Message question{"Warning - You are about to delete\nthe COM port settings for: " +
                               IO_device_lst.selected_text(),
                           "Delete entry?", Message_icon::exclamation, Message_buttons::ok_cancel};
    const Message_answer answer = co_await platform_.message_box.ask(question);
    if (answer == Message_answer::ok) {
        delete_machine_at(position);
    }
}

void configure_IO_lite::delete_machine_at(int position) {
    const std::string machine = IO_device_lst.items()[static_cast<std::size_t>(position)];
    IO_device_lst.remove(position);
    IO_device_lst.select(0);
    machine_ = 0;
    const auto settings_path =
        machine_file_path(platform_.files, named_port_settings_name(machine));
    const auto unlisted = remove_from_machine_list(platform_.files, machine);
    tell_list(unlisted);
    if (unlisted && settings_path) {
        platform_.files.remove(*settings_path);
    }
}

}  // namespace kelvane
