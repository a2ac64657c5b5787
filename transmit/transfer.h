#pragma once

#include <optional>
#include <string>

#include "machines/transfer_options.h"
#include "session/session.h"
#include "transmit/code_tables.h"
#include "transmit/program_part.h"
#include "transmit/receiver.h"
#include "transmit/sender.h"

namespace kelvane {

/// The one routine through which every transfer begins, and in which every one ends.
class Transfer {
  public:
    enum Mode : int { send = 0, receive = 1 };

    Transfer(const Session& session, const Code_tables& tables, Receiver& receiver);

    /// Sends `filename`, as text or, with `TX_binary`, the bytes of `binaryfilename`; or receives
    /// into `filename`, with `RX_binary` into the file of binary receives. Returns when the
    /// transfer has ended, its box included. While another is on it only beeps, and returns
    /// `refused`; so it does for other modes, which start nothing. A text send with a `part` sends
    /// that of the file.
    [[nodiscard]] Task<Outcome> Start_transfer(int mode,
                                               std::optional<Program_part> part = std::nullopt);

  private:
    struct Job {
        Mode mode = send;
        bool binary = false;
        std::string path;
        std::optional<Program_part> part = std::nullopt;
    };

    [[nodiscard]] Job job_of(int mode) const;
    [[nodiscard]] Task<Transfer_end> run(Job job);
    [[nodiscard]] std::optional<Transfer_end> open_port(const Job& job,
                                                        const Transfer_options& options);
    [[nodiscard]] Task<Transfer_end> run_send(Job job, const Transfer_options& options);
    [[nodiscard]] Task<Transfer_end> send_binary(const Transfer_options& options,
                                                 Text_sender& sender, std::string path);
    [[nodiscard]] Task<> drain();

    const Session session_;
    Transfer_control& control_;
    const Code_tables& tables_;
    Receiver& receiver_;
};

}  // namespace kelvane
