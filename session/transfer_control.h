#pragma once

#include "platform/controls.h"
#include "session/running_work.h"
#include "session/shared_state.h"

namespace kelvane {

/// What is going on, and what may begin or end it.
class Transfer_control {
  public:
    Transfer_control(Event_loop& loop, Shared_state& state, Button& Send_button,
                     Button& Stop_button);

    // --- Work other than a transfer: a listing, a resequencing

    /// False while a transfer or other work is going on, and when the window is being closed.
    [[nodiscard]] bool may_start_work() const;
    /// Work begins that Stop ends: `escape`, `IOsend_cancel` and `Stopped` become 0, Stop is live.
    void begin_stoppable_work();
    /// Such work has ended, whatever ended it: Stop is dead and reads "Stop"; no hold is left.
    void end_stoppable_work();
    /// The operator has pressed Stop, picked another command, or is closing the window.
    [[nodiscard]] bool stop_asked() const;

    /// From the moment the window is being closed nothing new may be started.
    void begin_closing();
    [[nodiscard]] bool closing() const { return closing_; }

    Running_work work;

  private:
    Shared_state& state_;
    Button& send_;
    Button& stop_;
    bool closing_ = false;
};

}  // namespace kelvane
