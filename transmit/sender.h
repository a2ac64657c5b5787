#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "machines/transfer_options.h"
#include "platform/task.h"
#include "session/session.h"
#include "transmit/code_tables.h"

namespace kelvane {

/// Puts text on the line as a tape reader would: converted to the machine's tape code, cut into
/// chunks, each released only when the machine's flow control allows it. What is queued never
/// exceeds two characters and one chunk, so a machine's Xoff takes effect within a few characters.
class Text_sender {
  public:
    /// What a single press of Stop does to output that waits.
    enum class On_stop {
        pauses,  ///< holds it under Xon/Xoff
        ends,    ///< gives it up
    };

    Text_sender(const Session& session, const Code_tables& tables, const Transfer_options& options,
                On_stop on_stop = On_stop::pauses);

    /// Sends one program block that ends with its end of block. Masked characters vanish; a block
    /// that begins with "!" is only a pause when such pauses are set. Returns early when the
    /// transfer is given up.
    Task<> sendit(std::string block, Tape_code code);
    /// Leaders, trailers and select codes: as `sendit` without pauses and mask.
    Task<> sendit2(std::string text, Tape_code code);

    /// The wait of the routines above: handshakes obeyed and fewer than 3 bytes queued. False when
    /// the transfer is given up.
    [[nodiscard]] Task<bool> wait_until_clear();
    /// Reads what the machine has sent, parity bits ignored: Xoff is set by DC3 and cleared by DC1;
    /// all else is dropped. True when a DC1 was among it.
    bool take_handshakes();
    [[nodiscard]] const Code_tables& tables() const { return tables_; }
    /// Hands bytes to the line and counts them.
    void put(std::string_view bytes);
    /// Bytes that have been handed to the line in all.
    [[nodiscard]] std::uint64_t handed_over() const { return handed_over_; }
    /// The operator has aborted, another command has been picked, or the port has gone.
    [[nodiscard]] bool given_up() const;

  private:
    Task<> send_chunks(std::string bytes);
    Task<> take_handshakes_and_rest();
    [[nodiscard]] bool output_is_free();

    const Session session_;
    Transfer_control& control_;
    Serial_comm& port_;
    const Code_tables& tables_;
    const Transfer_options& options_;
    On_stop on_stop_;
    std::uint64_t handed_over_ = 0;
};

}  // namespace kelvane
