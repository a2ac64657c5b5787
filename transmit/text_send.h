#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "transmit/program_part.h"
#include "transmit/readable_leader.h"
#include "transmit/sender.h"
#include "transmit/sub_files.h"

namespace kelvane {

/// One text send on an open port: from the working copy to the last character of the tail.
class Text_send {
  public:
    using Content = std::shared_ptr<const std::string>;

    /// `options` and `sender` outlive the send. With a `part` that is sent of the file. `known` is
    /// what the file probably holds, or null.
    Text_send(const Session& session, const Transfer_options& options, Text_sender& sender,
              std::string path, std::optional<Program_part> part, Content known);

    /// Makes and checks the working copy, sends the select codes, waits for the start, and sends
    /// the program. The end that it returns is still to be made; the last characters may be queued.
    [[nodiscard]] Task<Transfer_end> run();

    /// Says in the end of a send that has begun and not come to its end how far it has come; to be
    /// called before the port is closed.
    void tell_place(Transfer_end& end);

  private:
    [[nodiscard]] Task<std::optional<Message>> make_working_copy(Content& content);
    [[nodiscard]] Task<std::optional<Expansion_error>> prepare(Content program);
    Task<> send_program();
    Task<> send_pass();
    Task<> send_all_lines();
    [[nodiscard]] Transfer_end end() const;
    [[nodiscard]] std::optional<std::size_t> program_line(std::size_t line) const;
    void show_line(const std::string& line);
    void count_line(const std::string& line);
    void note_handed_over(const std::string& line);
    void note_left();
    void begin_next_cycle();
    [[nodiscard]] bool ends_between_lines() const;

    const Session session_;
    Transfer_control& control_;
    const Transfer_options& options_;
    Text_sender& sender_;
    const std::string path_;
    std::optional<Program_part> part_;
    Content known_;
    const Readable_leader readable_;
    Sub_file_reader lines_;
    std::uint64_t sent_count_ = 0;  ///< bytes of the program as progress counts them
    bool all_sent_ = false;         ///< the trailer and tail have gone too

    /// A block that has been handed to the line.
    struct Block {
        std::uint64_t end;  ///< bytes handed over up to its end
        std::size_t line;   ///< of the working copy, from 1
        std::string text;
    };
    std::deque<Block> queued_;        ///< those of which a part may not have left
    std::optional<Block> last_left_;  ///< the last that has left for certain
    bool begun_ = false;
};

/// Waits until the machine sends an Xon, the operator presses Send, or the send is stopped.
[[nodiscard]] Task<> wait_for_start(const Session& session, Text_sender& sender);

}  // namespace kelvane
