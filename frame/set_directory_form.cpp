#include "frame/set_directory_form.h"

namespace kelvane {

Set_directory_form_lite::Set_directory_form_lite(Platform& platform)
    : Form(platform.windows, "Set_directory_form_lite", "Default directory"),
      platform_(platform),
      tasks_(platform.loop) {
    directory_hint.plain = true;
    Directory_txt.selects_all_on_focus = true;
    Directory_txt.on_change = [this] { directory_changed(); };
    Directory_txt.on_enter = [this] { accept(); };
    Browse_button.on_click = [this] { tasks_.start(browse()); };
    OK_button.on_click = [this] { accept(); };
    Cancel_button.on_click = [this] { unload(); };
}

Task<std::optional<std::string>> Set_directory_form_lite::ask(std::string start) {
    accepted_ = false;
    load();
    Directory_txt.set_text(start);
    directory_changed();
    co_await show_modal();
    co_return accepted_ ? std::optional(Directory_txt.text()) : std::nullopt;
}

void Set_directory_form_lite::directory_changed() {
    const std::string& path = Directory_txt.text();
    const bool one_line = path.find_first_of("\r\n") == std::string::npos;
    const bool possible = path.empty() || (one_line && platform_.files.is_folder(path));
    directory_hint.set_caption(possible ? "" : "There is no such directory.");
    OK_button.set_enabled(possible);
}

Task<> Set_directory_form_lite::browse() {
    const auto folder = co_await platform_.file_dialog.ask_folder(Directory_txt.text());
    if (folder && loaded()) {
        Directory_txt.set_text(*folder);
    }
}

void Set_directory_form_lite::accept() {
    directory_changed();
    if (OK_button.enabled()) {
        accepted_ = true;
        unload();
    }
}

}  // namespace kelvane
