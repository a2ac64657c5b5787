#include "frame/directories_form.h"

#include <algorithm>

#include "frame/file_filter.h"
#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr std::size_t directory_line_count = 6;
constexpr std::size_t type_line_count = 4;
// Positions of the lines that are edited.
constexpr std::size_t path_line = 0;
constexpr std::size_t filter_line = 0;
constexpr std::size_t first_type_line = 2;
constexpr std::size_t add_extension_line = 3;

/// All lines of a file's content, `least` at least.
std::vector<std::string> lines_of(const Result<std::string>& content, std::size_t least) {
    Text_reader reader(content);
    std::vector<std::string> lines;
    for (std::string line; reader.line(line);) {
        lines.push_back(line);
    }
    lines.resize(std::max(lines.size(), least));
    return lines;
}

/// Fails when the lines could not be stored, or would take the place of a file that could not be
/// read; that file is whole then.
Result<> store_lines(Files& files, std::string_view name, const std::vector<std::string>& lines) {
    const std::string path = files.program_path(name);
    const auto old_content = files.read(path);
    if (old_content.unreadable()) {
        return old_content.failure();
    }
    Text_writer writer;
    for (const std::string& line : lines) {
        writer.line(line);
    }
    return old_content == writer.text() ? Result<>() : files.replace(path, writer.text());
}

/// `text` without what separates the parts and lines of the filter.
std::string without_separators(std::string text) {
    std::erase_if(text, [](char c) { return c == '|' || c == '\r' || c == '\n'; });
    return text;
}

std::string type_text(std::string text, const std::string& pattern) {
    return text.append("  (").append(pattern).append(")");
}

}  // namespace

directories_form_lite::directories_form_lite(Platform& platform, Shared_state& state,
                                             Set_directory_form_lite& set_directory)
    : Form(platform.windows, "directories_form_lite", "Files and directories"),
      platform_(platform),
      state_(state),
      set_directory_(set_directory),
      tasks_(platform.loop) {
    directory.plain = true;
    for (Text_box* box : {&Description_txt, &Pattern_txt}) {
        box->accepts_key = [](char key) { return key != '|'; };
        box->on_change = [this] { type_edited(); };
    }
    Types_lst.on_mouse_down = [this] { show_selected_type(); };
    attach_buttons();
}

void directories_form_lite::attach_buttons() {
    Set_directory_button.on_click = [this] { tasks_.start(set_directory()); };
    Add_button.on_click = [this] { add_type(); };
    Remove_button.on_click = [this] { remove_type(); };
    Up_button.on_click = [this] { move_type_up(); };
    OK_button.on_click = [this] { tasks_.start(accept()); };
    Cancel_button.on_click = [this] { unload(); };
}

void directories_form_lite::on_load() {
    const Files& files = platform_.files;
    const auto directories = files.read(files.program_path(file_names::default_directories));
    const auto types = files.read(files.program_path(file_names::default_file_types));
    unread_ = directories.unreadable() || types.unreadable();
    directory_lines_ = lines_of(directories, directory_line_count);
    type_lines_ = lines_of(types, type_line_count);
    directory_path_ = directory_lines_[path_line];
    types_ = filter_pairs(type_lines_[filter_line]);
    First_type_lst.clear();
    show_types(0);
    First_type_lst.select(CInt(Val(type_lines_[first_type_line]) - 1));
    chk_add_extension.set_checked(whole_number(type_lines_[add_extension_line]) != 0);
    show_directory();
}

void directories_form_lite::show_directory() {
    directory.set_caption(directory_path_.empty() ? "(none)" : directory_path_);
}

Task<> directories_form_lite::set_directory() {
    const auto chosen = co_await set_directory_.ask(directory_path_);
    if (chosen && loaded()) {
        directory_path_ = *chosen;
        show_directory();
    }
}

/// Fills both lists; the type that is shown first keeps its position.
void directories_form_lite::show_types(int selected) {
    const int first = First_type_lst.selected();
    std::vector<std::string> types;
    std::vector<std::string> descriptions;
    for (const auto& [description, pattern] : types_) {
        types.push_back(type_text(description, pattern));
        descriptions.push_back(description);
    }
    Types_lst.set_items(std::move(types));
    First_type_lst.set_items(std::move(descriptions));
    Types_lst.select(std::min(selected, static_cast<int>(types_.size()) - 1));
    First_type_lst.select(first);
    show_selected_type();
}

void directories_form_lite::show_selected_type() {
    const int selected = Types_lst.selected();
    const bool any = selected >= 0;
    const auto type = any ? types_[static_cast<std::size_t>(selected)] : Types::value_type();
    showing_ = true;
    Description_txt.set_text(type.first);
    Pattern_txt.set_text(type.second);
    showing_ = false;
    for (Control* control :
         std::initializer_list<Control*>{&Description_txt, &Pattern_txt, &Remove_button}) {
        control->set_enabled(any);
    }
    Up_button.set_enabled(selected > 0);
}

void directories_form_lite::type_edited() {
    const int selected = Types_lst.selected();
    if (showing_ || selected < 0) {
        return;
    }
    types_[static_cast<std::size_t>(selected)] = {without_separators(Description_txt.text()),
                                                  without_separators(Pattern_txt.text())};
    show_types(selected);
}

void directories_form_lite::add_type() {
    types_.emplace_back("New type", "*.nc");
    show_types(static_cast<int>(types_.size()) - 1);
}

void directories_form_lite::remove_type() {
    const int selected = Types_lst.selected();
    if (selected < 0) {
        return;
    }
    types_.erase(types_.begin() + selected);
    First_type_lst.remove(selected);
    show_types(selected);
}

void directories_form_lite::move_type_up() {
    const int selected = Types_lst.selected();
    if (selected <= 0) {
        return;
    }
    std::swap(types_[static_cast<std::size_t>(selected)],
              types_[static_cast<std::size_t>(selected) - 1]);
    const int first = First_type_lst.selected();
    if (first == selected || first == selected - 1) {
        First_type_lst.select(first == selected ? selected - 1 : selected);
    }
    show_types(selected - 1);
}

/// The stored text where the types are those it stands for. A type without a pattern takes all
/// files, one without a description is called by its pattern.
std::string directories_form_lite::filter() const {
    if (types_ == filter_pairs(type_lines_[filter_line])) {
        return type_lines_[filter_line];
    }
    std::string text;
    for (const auto& [description, pattern] : types_) {
        const std::string shown_pattern = pattern.empty() ? "*" : pattern;
        text += (text.empty() ? "" : "|") + (description.empty() ? shown_pattern : description) +
                "|" + shown_pattern;
    }
    return text;
}

Task<> directories_form_lite::accept() {
    if (const auto stored = store(); !stored) {
        const Message message{
            "Cannot write the files and directories settings.\n" + stored.reason(),
            std::string(product_name), Message_icon::critical};
        co_await platform_.message_box.ask(message);
        co_return;
    }
    put_in_force();
    unload();
}

Result<> directories_form_lite::store() {
    if (unread_) {
        return Failure{"They could not be read. Open this window again."};
    }
    directory_lines_[path_line] = directory_path_;
    type_lines_[filter_line] = filter();
    const int first_type = First_type_lst.selected() + 1;
    if (first_type > 0 && first_type != whole_number(type_lines_[first_type_line])) {
        type_lines_[first_type_line] = decimal(first_type);
    }
    const bool was_adding = whole_number(type_lines_[add_extension_line]) != 0;
    if (chk_add_extension.checked() != was_adding) {
        type_lines_[add_extension_line] = chk_add_extension.checked() ? "1" : "0";
    }
    Files& files = platform_.files;
    return store_lines(files, file_names::default_directories, directory_lines_).and_then([&] {
        return store_lines(files, file_names::default_file_types, type_lines_);
    });
}

void directories_form_lite::put_in_force() {
    state_.default_path = directory_path_;
    state_.file_types = type_lines_[filter_line];
    state_.Add_extension = whole_number(type_lines_[add_extension_line]);
    platform_.file_dialog.initial_directory = state_.default_path;
    platform_.file_dialog.filter = state_.file_types;
    platform_.file_dialog.filter_index = whole_number(type_lines_[first_type_line]);
}

}  // namespace kelvane
