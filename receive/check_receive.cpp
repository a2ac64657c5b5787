// What a command-line receive does to its target before any data is taken.

#include "receive/receive_loop.h"

namespace kelvane {

namespace {

constexpr const char* write_test_name = "DummyfilenameforIOtest";

}  // namespace

bool Receive_loop::Check_receive() {
    if (const auto done = folder_can_be_written(); !done) {
        end_job("Cannot write to folder " + folder_of(state_.filename) + "\n" + done.reason());
        return false;
    }
    if (!platform_.files.exists(state_.filename)) {
        return true;
    }
    const Message_answer answer =
        window_.box("File " + state_.filename +
                        " already exists.\nDo you want to overwrite the "
                        "exiting file?",
                    Message_icon::exclamation, Message_buttons::yes_no, "Overwrite?");
    if (answer != Message_answer::yes) {
        window_.unload();
        return false;
    }
    if (const auto done = keep_backup(); !done) {
        end_job("Cannot keep a backup of file " + state_.filename + "\n" + done.reason());
        return false;
    }
    return true;
}

Result<> Receive_loop::folder_can_be_written() {
    const std::string folder = folder_of(state_.filename);
    if (folder.empty()) {
        return {};
    }
    return platform_.files.try_out(path_in(folder, write_test_name));
}

// A ".bak" file would be its own backup: it stays until the new program takes its place.
Result<> Receive_loop::keep_backup() {
    const std::string backup = backup_path(state_.filename);
    if (same_path(state_.filename, backup)) {
        return {};
    }
    return platform_.files.copy(state_.filename, backup).and_then([this] {
        return platform_.files.remove(state_.filename);
    });
}

void Receive_loop::end_job(const std::string& text) {
    window_.box(text);
    window_.unload();
}

}  // namespace kelvane
