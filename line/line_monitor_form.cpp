#include "line/line_monitor_form.h"

#include <optional>
#include <utility>

namespace kelvane {

namespace {

constexpr const char* text_files = "Text files|*.txt|All files|*";

/// The file dialog's filter, for one showing.
class Text_filter {
  public:
    explicit Text_filter(File_dialog& dialog)
        : dialog_(dialog),
          filter_(std::exchange(dialog.filter, text_files)),
          index_(std::exchange(dialog.filter_index, 1)) {}
    Text_filter(const Text_filter&) = delete;
    Text_filter& operator=(const Text_filter&) = delete;
    ~Text_filter() {
        dialog_.filter = filter_;
        dialog_.filter_index = index_;
    }

  private:
    File_dialog& dialog_;
    std::string filter_;
    int index_;
};

/// A name without an extension gets one that is no program's.
std::string text_file(const std::string& path) {
    const bool has_extension = name_of(path).find('.') != std::string::npos;
    return path + (has_extension ? "" : ".txt");
}

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
    const std::optional<std::string> path = co_await ask_path();
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

Task<std::optional<std::string>> Line_monitor_form::ask_path() {
    while (true) {
        const Text_filter filter(platform_.file_dialog);
        platform_.file_dialog.title = "Save what crossed the line";
        const auto chosen = co_await platform_.file_dialog.ask_file(File_purpose::save);
        if (!chosen) {
            co_return std::nullopt;
        }
        const std::string path = text_file(*chosen);
        const bool may = co_await may_write(path);
        if (may) {
            co_return path;
        }
    }
}

Task<bool> Line_monitor_form::may_write(std::string path) {
    if (!platform_.files.exists(path)) {
        co_return true;
    }
    const Message question{
        "Warning ... File " + path + "\nalready exists. Overwrite existing file?", "Overwrite?",
        Message_icon::exclamation, Message_buttons::yes_no};
    const Message_answer answer = co_await platform_.message_box.ask(question);
    co_return answer == Message_answer::yes;
}

}  // namespace kelvane
