#include "frame/tool_commands.h"

#include <utility>

namespace kelvane {

Tool_commands::Tool_commands(Kelvane_lite_form& window, Commands& commands,
                             Open_program& open_program, Start_form& start_form,
                             Compare_form& compare_form)
    : window_(window),
      commands_(commands),
      open_program_(open_program),
      start_form_(start_form),
      compare_form_(compare_form) {
    commands_.on_broken_send = [this](const Commands::Broken_send& broken) { send_broke(broken); };
}

void Tool_commands::send_broke(const Commands::Broken_send& broken) {
    open_at_break_ = open_program_.path();
    if (same_path(broken.path, open_program_.path())) {
        open_program_.go_to_line(broken.line - 1);
        open_at_break_.reset();
    }
}

Tool_commands::Place Tool_commands::likeliest_place() const {
    const auto& broken = commands_.broken_send();
    if (broken && open_at_break_ == open_program_.path()) {
        return {broken->path, broken->line - 1};
    }
    if (!open_program_.path().empty()) {
        return {open_program_.path(), open_program_.view().line_at(open_program_.caret.place())};
    }
    return {window_.state.filename, 0};
}

Task<> Tool_commands::send_from_block() {
    if (start_form_.visible()) {
        co_return;
    }
    Place place = likeliest_place();
    if (place.path.empty() && open_program_.changed()) {
        const bool saved = co_await open_program_.save();
        place.path = saved ? open_program_.path() : std::string();
    } else if (place.path.empty()) {
        File_dialog& dialog = window_.platform.file_dialog;
        dialog.title = "Send from a block";
        const auto chosen = co_await dialog.ask_file(File_purpose::open);
        place.path = chosen.value_or(std::string());
    }
    if (place.path.empty()) {
        co_return;
    }
    const bool may = co_await open_program_.may_be_read(place.path, "sent");
    if (!may) {
        co_return;
    }
    auto start = co_await start_form_.ask(std::move(place.path), place.line);
    if (start && window_.control.may_start_work() && !commands_.running()) {
        window_.state.filename = start->path;
        co_await commands_.send(false, std::move(start->part));
    }
}

Compared_program Tool_commands::program_to_compare() {
    if (const auto offer = commands_.take_offer()) {
        return {*offer, commands_.received()->before, " before the receive"};
    }
    if (open_program_.changed()) {
        return {open_program_.path(), open_program_.document().text(), " as in the editor"};
    }
    const std::string& open = open_program_.path();
    return {open.empty() ? window_.state.filename : open, std::nullopt, ""};
}

Task<> Tool_commands::compare() {
    if (compare_form_.visible()) {
        co_return;
    }
    co_await compare_form_.compare(program_to_compare(), commands_.received());
}

}  // namespace kelvane
