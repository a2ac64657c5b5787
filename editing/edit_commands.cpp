#include "editing/edit_commands.h"

#include <utility>

namespace kelvane {

namespace {

constexpr int usual_zoom = 100;

struct Item_text {
    const char* caption;
    const char* shortcut;
    bool begins_group;
};

constexpr Item_text item_texts[Edit_commands::item_count] = {
    {"&New", "Ctrl+N", false},
    {"&Open ...", "Ctrl+O", false},
    {"&Save", "Ctrl+S", false},
    {"Save &as ...", "Ctrl+Shift+S", false},
    {"&Undo", "Ctrl+Z", true},
    {"Re&do", "Ctrl+Y", false},
    {"Cu&t", "Ctrl+X", false},
    {"&Copy", "Ctrl+C", false},
    {"&Paste", "Ctrl+V", false},
    {"S&elect all", "Ctrl+A", false},
    {"&Find and replace", "Ctrl+F", true},
    {"Find ne&xt", "F3", false},
    {"Find pre&vious", "Shift+F3", false},
    {"Go to l&ine or block", "Ctrl+G", false},
    {"Pro&gram or messages", "F6", true},
    {"Follow the &block sent", "Ctrl+B", false},
    {"&Larger letters", "Ctrl++", true},
    {"S&maller letters", "Ctrl+-", false},
    {"Usual si&ze of letters", "Ctrl+0", false},
};

template <std::size_t... i>
std::array<Button, sizeof...(i)> make_buttons(const std::string& name, std::index_sequence<i...>) {
    return {Button(name + std::to_string(i))...};
}

/// "&" in a path is no access key.
std::string menu_text(const std::string& path) {
    std::string text;
    for (const char c : path) {
        text += c == '&' ? "&&" : std::string(1, c);
    }
    return text;
}

}  // namespace

Edit_commands::Edit_commands(Task_keeper& tasks, Program_pane& pane, Find_bar& find_bar)
    : EditMenuItem(make_buttons("EditMenuItem", std::make_index_sequence<item_count>())),
      RecentMenuItem(
          make_buttons("RecentMenuItem", std::make_index_sequence<Recent_programs::most>())),
      tasks_(tasks),
      pane_(pane),
      find_bar_(find_bar) {
    for (std::size_t i = 0; i < item_count; ++i) {
        EditMenuItem[i].set_caption(item_texts[i].caption);
        EditMenuItem[i].shortcut = item_texts[i].shortcut;
        EditMenuItem[i].begins_group = item_texts[i].begins_group;
    }
    attach_handlers();
    refresh();
}

void Edit_commands::attach_handlers() {
    const auto on = [this](Item item, std::function<void()> handler) {
        EditMenuItem[item].on_click = std::move(handler);
    };
    on(new_program, [this] { start(pane_.program().start_new()); });
    on(open, [this] { start(pane_.program().choose_and_open()); });
    on(save, [this] { start(run_save()); });
    on(save_as, [this] { start(run_save_as()); });
    on(undo, [this] { pane_.undo(); });
    on(redo, [this] { pane_.redo(); });
    on(cut, [this] { pane_.cut(); });
    on(copy, [this] { pane_.copy(); });
    on(paste, [this] { pane_.paste(); });
    on(select_all, [this] { pane_.select_all(); });
    on(find, [this] { find_bar_.open_find(); });
    on(find_next, [this] { find_bar_.find_next(); });
    on(find_previous, [this] { find_bar_.find_previous(); });
    on(go_to, [this] { find_bar_.open_go_to(); });
    on(other_content, [this] { show_other_content(); });
    on(follow, [this] { pane_.follow(); });
    on(larger, [this] { pane_.zoom_by(1); });
    on(smaller, [this] { pane_.zoom_by(-1); });
    on(usual_size, [this] { pane_.set_zoom(usual_zoom); });
    for (std::size_t i = 0; i < RecentMenuItem.size(); ++i) {
        RecentMenuItem[i].on_click = [this, i] { open_file(pane_.program().recent().at(i)); };
    }
}

/// The program is what these commands are about, so it comes to the front.
void Edit_commands::start(Task<> task) {
    pane_.show_program();
    tasks_.start(std::move(task));
}

Task<> Edit_commands::run_save() {
    co_await pane_.program().save();
}

Task<> Edit_commands::run_save_as() {
    co_await pane_.program().save_as();
}

void Edit_commands::show_other_content() {
    if (pane_.content() == Program_pane::Content::log) {
        pane_.show_program();
    } else {
        pane_.show_log();
    }
}

void Edit_commands::open_file(const std::string& path) {
    start(pane_.program().open(path));
}

void Edit_commands::refresh() {
    Open_program& program = pane_.program();
    const bool edits = !pane_.read_only();
    const bool selects = pane_.caret().selects();
    const auto enable = [this](Item item, bool can) { EditMenuItem[item].set_enabled(can); };
    enable(save, !program.loading() && program.changed());
    enable(save_as, program.editable());
    enable(undo, edits && program.document().can_undo());
    enable(redo, edits && program.document().can_redo());
    enable(cut, edits && selects);
    enable(copy, selects);
    enable(paste, edits);
    enable(other_content, pane_.has_log());
    enable(follow, pane_.band_is_away());
    const std::vector<std::string>& recent = program.recent();
    for (std::size_t i = 0; i < RecentMenuItem.size(); ++i) {
        RecentMenuItem[i].set_visible(i < recent.size());
        RecentMenuItem[i].set_caption(i < recent.size() ? menu_text(recent[i]) : std::string());
    }
}

}  // namespace kelvane
