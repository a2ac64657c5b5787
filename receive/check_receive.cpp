#include "receive/check_receive.h"

#include "session/file_names.h"

namespace kelvane {

namespace {

Result<> try_folder(Files& files, const std::string& path) {
    const std::string folder = folder_of(path);
    if (folder.empty()) {
        return {};
    }
    return files.try_out(path_in(folder, file_names::write_test));
}

// A ".bak" file would be its own backup: it stays until the new program takes its place.
Result<> keep_backup(Files& files, const std::string& path) {
    const std::string backup = backup_path(path);
    if (same_path(path, backup)) {
        return {};
    }
    return files.copy(path, backup).and_then([&] { return files.remove(path); });
}

}  // namespace

std::optional<Message> Try_target_folder(Files& files, const std::string& path) {
    const auto tried = try_folder(files, path);
    return tried ? std::nullopt
                 : std::optional(critical_box("Cannot write to directory " + folder_of(path) +
                                              "\n" + tried.reason()));
}

Task<bool> Check_receive(const Session& session, std::string path) {
    Files& files = session.files;
    if (const auto refusal = Try_target_folder(files, path)) {
        const Message& box = *refusal;
        co_await session.op.ask(box);
        co_return false;
    }
    if (!files.exists(path)) {
        co_return true;
    }
    const Message question{
        "File " + path + " already exists.\nDo you want to overwrite the exiting file?",
        "Overwrite?", Message_icon::exclamation, Message_buttons::yes_no};
    const Message_answer answer = co_await session.op.ask(question);
    if (answer != Message_answer::yes) {
        co_return false;
    }
    if (const auto kept = keep_backup(files, path); !kept) {
        const Message box =
            critical_box("Cannot keep a backup of file " + path + "\n" + kept.reason());
        co_await session.op.ask(box);
        co_return false;
    }
    co_return true;
}

}  // namespace kelvane
