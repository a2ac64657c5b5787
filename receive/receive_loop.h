#pragma once

#include <optional>
#include <string>

#include "frame/main_window.h"
#include "receive/code_convert.h"

namespace kelvane {

/// Collects what arrives on a port that a receive has opened, and turns it into the operator's file
/// when the machine has been silent for the time-out. It lives on the main window's timers: Timer5
/// polls, Timer6 ends the receive, Timer8 answers a lone DC2.
class Receive_loop {
  public:
    Receive_loop(Kelvane_lite_form& window, const Code_tables& tables);

    /// Prepares the target of a command-line receive: tries whether its folder can be written, asks
    /// before an existing file is overwritten and keeps it as a ".bak" file. False when the job has
    /// ended here (the window is being unloaded then).
    [[nodiscard]] bool Check_receive();

    /// Turns the raw bytes of the staging file into text. Data that cannot be recognised is told in
    /// a box and stays raw. False, after a box, when the file cannot be read or replaced: it stays
    /// raw, and is not to be saved as if it were text.
    [[nodiscard]] bool code_convert_file();

  private:
    void poll();
    void abort();
    void take_waiting();
    [[nodiscard]] bool is_lone_dc2(const std::string& data) const;
    [[nodiscard]] bool store(const std::string& data);
    void end_on_lost_port();
    void end_on_full_disk(const std::string& reason);
    void stop_timers();
    void give_up(const std::string& note);

    void end_of_receive();
    void finish_binary();
    void finish_text();
    void tell_illegal_characters();
    [[nodiscard]] bool apply_skip_upto();
    [[nodiscard]] bool save_single_file();
    void show_saved_file();
    [[nodiscard]] bool save_separate_files();
    [[nodiscard]] bool save_as_one(const std::string& text);
    /// The staging file's content; no value, after a box, when it cannot be read.
    [[nodiscard]] std::optional<std::string> read_staging();
    [[nodiscard]] bool write(const std::string& path, const std::string& content);
    void tell_unwritten(const std::string& path, const std::string& reason);
    void finish(bool saved);

    [[nodiscard]] Result<> folder_can_be_written();
    [[nodiscard]] Result<> keep_backup();
    void end_job(const std::string& text);

    Kelvane_lite_form& window_;
    Shared_state& state_;
    Platform& platform_;
    const Code_tables& tables_;
    std::string staging_;
    std::string saved_note_;
};

}  // namespace kelvane
