#include "transmit/binary_send.h"

namespace kelvane {

namespace {

constexpr std::size_t progress_step = 100;

}  // namespace

bool Sendit_Binary(Kelvane_lite_form& window, Text_sender& sender) {
    const Shared_state& state = window.state;
    const auto content = window.platform.files.read(state.binaryfilename);
    if (!content) {
        return false;
    }
    for (std::size_t sent = 0; sent < content->size(); ++sent) {
        if ((sent + 1) % progress_step == 0) {
            window.platform.loop.process_pending();
            window.set_progress(static_cast<int>(sent * 100 / content->size()));
        }
        if (!sender.wait_until_clear(true) || (state.IOsend_cancel == 1 && !state.Xonhs)) {
            return true;
        }
        sender.put(std::string_view(*content).substr(sent, 1));
        if (state.Character_delay != 0) {
            window.wait_for_timer(window.Timer9);
        }
    }
    return true;
}

}  // namespace kelvane
