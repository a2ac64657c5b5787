#include "machines/select_device_form.h"

#include "machines/machine_files.h"

namespace kelvane {

select_device_form_lite::select_device_form_lite(Platform& platform, Shared_state& state)
    : Form(platform.windows, "select_device_form_lite", "Select I/O device"),
      platform_(platform),
      state_(state),
      tasks_(platform.loop) {
    Command1.on_click = [this] { select(); };
    IO_device_lst.on_double_click = [this] { select(); };
    Command2.on_click = [this] { unload(); };
}

void select_device_form_lite::on_load() {
    auto machines = machine_list_items(platform_.files);
    if (!machines) {
        unload();
        tasks_.start(tell_unreadable(machines.reason()));
        return;
    }
    IO_device_lst.set_items(*std::move(machines));
    IO_device_lst.select(machine_position(IO_device_lst.items(), state_.IO_device_name));
}

Task<> select_device_form_lite::tell_unreadable(std::string reason) {
    const Message message{"Cannot read the list of machines.\n" + reason, std::string(product_name),
                          Message_icon::critical, Message_buttons::ok};
    co_await platform_.message_box.ask(message);
}

void select_device_form_lite::select() {
    if (IO_device_lst.selected() < 0) {
        return;
    }
    state_.IO_device = IO_device_lst.selected();
    state_.IO_device_name = IO_device_lst.selected_text();
    if (on_selected) {
        on_selected();
    }
    unload();
}

}  // namespace kelvane
