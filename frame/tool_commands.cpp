#include "frame/tool_commands.h"

#include <utility>

namespace kelvane {

Tool_commands::Tool_commands(Kelvane_lite_form& window, Commands& commands, Start_form& start_form,
                             Compare_form& compare_form)
    : window_(window), commands_(commands), start_form_(start_form), compare_form_(compare_form) {}

Task<> Tool_commands::send_from_block() {
    if (start_form_.visible()) {
        co_return;
    }
    std::string path = window_.state.filename;
    std::size_t line = 0;
    if (const auto& broken = commands_.broken_send()) {
        path = broken->path;
        line = broken->line - 1;
    }
    if (path.empty()) {
        const auto chosen = co_await window_.platform.file_dialog.ask_file(File_purpose::open);
        path = chosen.value_or(std::string());
    }
    if (path.empty()) {
        co_return;
    }
    auto start = co_await start_form_.ask(std::move(path), line);
    if (start && window_.control.may_start_work() && !commands_.running()) {
        window_.state.filename = start->path;
        co_await commands_.send(false, std::move(start->part));
    }
}

Task<> Tool_commands::compare() {
    if (compare_form_.visible()) {
        co_return;
    }
    co_await compare_form_.compare(window_.state.filename, commands_.received());
}

}  // namespace kelvane
