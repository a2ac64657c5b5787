#include "platform/save_path.h"

#include <utility>

namespace kelvane {

namespace {

/// The file dialog's filter, for one showing.
class Filter_for_once {
  public:
    Filter_for_once(File_dialog& dialog, const std::string& filter)
        : dialog_(dialog), filter_(dialog.filter), index_(dialog.filter_index) {
        if (!filter.empty()) {
            dialog_.filter = filter;
            dialog_.filter_index = 1;
        }
    }
    Filter_for_once(const Filter_for_once&) = delete;
    Filter_for_once& operator=(const Filter_for_once&) = delete;
    ~Filter_for_once() {
        dialog_.filter = filter_;
        dialog_.filter_index = index_;
    }

  private:
    File_dialog& dialog_;
    std::string filter_;
    int index_;
};

std::string with_an_extension(const std::string& path, const std::string& extension) {
    return name_of(path).find('.') == std::string::npos ? path + extension : path;
}

}  // namespace

Message overwrite_question(const std::string& path) {
    return {"Warning ... File " + path + "\nalready exists. Overwrite existing file?", "Overwrite?",
            Message_icon::exclamation, Message_buttons::yes_no};
}

Task<std::optional<std::string>> ask_save_path(const Platform& platform, Save_request request) {
    while (true) {
        const Filter_for_once filter(platform.file_dialog, request.filter);
        platform.file_dialog.title = request.title;
        platform.file_dialog.proposed = request.proposed;
        const auto chosen = co_await platform.file_dialog.ask_file(File_purpose::save);
        if (!chosen) {
            co_return std::nullopt;
        }
        std::string path = with_an_extension(*chosen, request.extension);
        if (!platform.files.exists(path)) {
            co_return path;
        }
        const Message question = overwrite_question(path);
        const Message_answer answer = co_await platform.message_box.ask(question);
        if (answer == Message_answer::yes) {
            co_return path;
        }
        request.proposed = std::move(path);
    }
}

}  // namespace kelvane
