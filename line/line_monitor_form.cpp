#include "line/line_monitor_form.h"

#include <optional>
#include <utility>

#include "platform/save_path.h"

namespace kelvane {

namespace {

constexpr const char* text_files = "Text files|*.txt|All files|*";

}  // namespace

Line_monitor_form::Line_monitor_form(Platform& platform, Line_watch& watch)
    : Form(platform.windows, "Line_monitor_form", "Line monitor"),
      view(platform, watch),
      platform_(platform),
      tasks_(platform.loop) {
    Pause_button.on_click = [this] { pause(!view.held()); };
    Clear_button.on_click = [this] { view.clear(); };
    Copy_button.on_click = [this] { view.Crossed_txt.copy(); };
    Save_button.on_click = [this] { tasks_.start(save()); };
    Close_button.on_click = [this] { close(); };
}

void Line_monitor_form::on_load() {
    view.open();
    pause(false);
}

void Line_monitor_form::pause(bool paused) {
    view.hold(paused);
    Pause_button.set_caption(paused ? "&Go on" : "&Pause");
}

Task<> Line_monitor_form::save() {
    const Save_request request{"Save what crossed the line", text_files, ".txt"};
    const std::optional<std::string> path = co_await ask_save_path(platform_, request);
    if (!path) {
        co_return;
    }
    const auto saved = platform_.files.replace(*path, view.text());
    if (!saved) {
        const Message failed{"The log could not be saved as " + *path + "\n" + saved.reason(),
                             std::string(product_name), Message_icon::critical};
        co_await platform_.message_box.ask(failed);
    }
}

}  // namespace kelvane
