#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "transmit/readable_leader.h"
#include "transmit/sender.h"
#include "transmit/sub_files.h"

namespace kelvane {

/// One text send on an open port: from the working copy to the last character of the tail.
class Text_send {
  public:
    /// `options` and `sender` outlive the send.
    Text_send(const Session& session, const Transfer_options& options, Text_sender& sender,
              std::string path);

    /// Makes and checks the working copy, sends the select codes, waits for the start, and sends
    /// the program. The end that it returns is still to be made; the last characters may be queued.
    [[nodiscard]] Task<Transfer_end> run();

  private:
    [[nodiscard]] std::optional<Transfer_end> prepare();
    Task<> send_program();
    Task<> send_pass();
    Task<> send_all_lines();
    [[nodiscard]] Transfer_end end() const;
    void show_line(const std::string& line);
    [[nodiscard]] std::size_t number_of_line(std::size_t offset);
    void count_line(const std::string& line);
    void begin_next_cycle();
    [[nodiscard]] bool ends_between_lines() const;

    const Session session_;
    Transfer_control& control_;
    const Transfer_options& options_;
    Text_sender& sender_;
    const std::string path_;
    const std::string copy_;
    const Readable_leader readable_;
    Sub_file_reader lines_;
    std::string program_;           ///< the working copy
    std::size_t line_offset_ = 0;   ///< of the line of it that leaves
    std::size_t lines_before_ = 0;  ///< that line
    std::uint64_t sent_count_ = 0;  ///< bytes of the program as progress counts them
    bool all_sent_ = false;         ///< the trailer and tail have gone too
};

/// Waits until the machine sends an Xon, the operator presses Send, or the send is stopped.
[[nodiscard]] Task<> wait_for_start(const Session& session, Text_sender& sender);

}  // namespace kelvane
