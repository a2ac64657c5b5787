#include "transmit/switchbox.h"

#include "machines/machine_files.h"
#include "machines/notation.h"

namespace kelvane {

Task<std::optional<Transfer_end>> Send_switchbox_codes(const Session& session,
                                                       const Transfer_options& options,
                                                       Text_sender& sender) {
    session.op.beep();
    const auto line = read_switchbox_text(session.files, options.machine);
    if (!line) {
        co_return end_with(
            Outcome::refused,
            warning_box("Unable to read the switchbox select codes\n" + line.reason(),
                        "File read error"));
    }
    std::string codes;
    if (const Fault_or_ok fault = parsit(*line, options.TX_code, codes)) {
        co_return end_with(*fault);
    }
    if (!codes.empty()) {
        co_await sender.sendit2(codes, options.TX_code);
    }
    co_return std::nullopt;
}

}  // namespace kelvane
