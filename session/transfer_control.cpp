#include "session/transfer_control.h"

namespace kelvane {

Transfer_control::Transfer_control(Event_loop& loop, Shared_state& state, Button& Send_button,
                                   Button& Stop_button)
    : work(loop), state_(state), send_(Send_button), stop_(Stop_button) {}

bool Transfer_control::may_start_work() const {
    return !work.any() && state_.busy == 0 && !closing_;
}

void Transfer_control::begin_stoppable_work() {
    state_.escape = 0;
    state_.IOsend_cancel = 0;
    state_.Stopped = 0;
    stop_.set_enabled(true);
}

void Transfer_control::end_stoppable_work() {
    stop_.set_enabled(false);
    stop_.set_caption("Stop");
    state_.Stopped = 0;
    state_.Xoff = 0;
}

bool Transfer_control::stop_asked() const {
    return state_.escape != 0 || state_.IOsend_cancel != 0;
}

void Transfer_control::begin_closing() {
    closing_ = true;
    state_.escape = 1;
    state_.IOsend_cancel = 1;
    work.forget();
}

}  // namespace kelvane
