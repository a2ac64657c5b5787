#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "machines/transfer_options.h"
#include "session/session.h"
#include "transmit/code_tables.h"
#include "transmit/program_part.h"
#include "transmit/receiver.h"
#include "transmit/sender.h"

namespace kelvane {

/// The one routine through which every transfer begins, and in which every one ends: the machine's
/// settings are read, the port is opened, the send or the receive runs, the last characters leave,
/// the port is closed, and what came of it is told. At any moment at most one transfer is on.
class Transfer {
  public:
    /// As the menus and the command line number the directions.
    enum Mode : int {
        send = 0,    ///< to the machine
        receive = 1  ///< what the machine punches out
    };

    /// All three outlive the transfer. `receiver` does the middle part of receives.
    Transfer(const Session& session, const Code_tables& tables, Receiver& receiver);

    /// Sends `filename`, as text or, with `TX_binary`, the bytes of `binaryfilename`; or receives
    /// into `filename`, with `RX_binary` into the file of binary receives. Returns when the
    /// transfer has ended, its box included. While another is on it only beeps, and returns
    /// `refused`; so it does for other modes, which start nothing. A text send with a `part` sends
    /// that of the file.
    [[nodiscard]] Task<Outcome> Start_transfer(int mode,
                                               std::optional<Program_part> part = std::nullopt);

    /// What is in memory already of the file at that path, and may have become another one; null
    /// when nothing is. A send then needs no memory of its own for it. May be empty.
    std::function<std::shared_ptr<const std::string>(const std::string& path)> known_content;

  private:
    struct Job {
        Mode mode = send;
        bool binary = false;  ///< the file's bytes as they are, in no tape code
        std::string path;     ///< that is sent, or that takes what is received
        std::optional<Program_part> part = std::nullopt;
    };

    /// What the shared state says at the start; it may change while the transfer runs.
    [[nodiscard]] Job job_of(int mode) const;
    /// From the machine's settings to the end, which says what remains to be told.
    [[nodiscard]] Task<Transfer_end> run(Job job);
    /// The port open and the timers set as the machine wants them; else the refusal to end with.
    [[nodiscard]] std::optional<Transfer_end> open_port(const Job& job,
                                                        const Transfer_options& options);
    [[nodiscard]] Task<Transfer_end> run_send(Job job, const Transfer_options& options);
    [[nodiscard]] Task<Transfer_end> send_binary(const Transfer_options& options,
                                                 Text_sender& sender, std::string path);
    /// Waits until the last character has left the transmitter; a held line is given up by Stop.
    [[nodiscard]] Task<> drain();

    const Session session_;
    Transfer_control& control_;
    const Code_tables& tables_;
    Receiver& receiver_;
};

}  // namespace kelvane
