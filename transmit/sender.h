#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "frame/main_window.h"
#include "transmit/code_tables.h"

namespace kelvane {

/// Puts text on the line as a tape reader would: converted to the machine's tape code, cut into
/// chunks, each released only when the machine's flow control allows it. What is queued never
/// exceeds two characters and one chunk, so a machine's Xoff takes effect within a few characters.
class Text_sender {
  public:
    Text_sender(Kelvane_lite_form& window, const Code_tables& tables);

    /// Sends one program block that ends with its end of block. Masked characters vanish; a block
    /// that begins with "!" is only a pause when such pauses are set. Returns early when `escape`
    /// is 1 or the port has gone.
    void sendit(std::string_view block, Tape_code code);
    /// Leaders, trailers and select codes: as `sendit` without pauses and mask.
    void sendit2(std::string_view text, Tape_code code);
    /// Returns when sending is allowed, or when `escape` is 1 or the port has gone.
    void Wait_for_Xon();

    /// The wait of the routines above: handshakes obeyed and fewer than 3 bytes queued. With
    /// `rests_after_xon` an Xon from the machine is followed by a rest of 250 ms. False when the
    /// transfer is to be given up.
    [[nodiscard]] bool wait_until_clear(bool rests_after_xon);
    /// Reads what the machine has sent, parity bits ignored: Xoff is set by DC3 and cleared by DC1;
    /// all else is dropped. True when a DC1 was among it.
    bool take_handshakes(bool rests_after_xon);
    /// Hands bytes to the line and counts them.
    void put(std::string_view bytes);

  private:
    [[nodiscard]] std::string converted(std::string_view text, Tape_code code,
                                        std::string_view mask) const;
    void send_chunks(std::string_view bytes);
    [[nodiscard]] bool held();

    Kelvane_lite_form& window_;
    Shared_state& state_;
    Serial_comm& port_;
    const Code_tables& tables_;
};

}  // namespace kelvane
