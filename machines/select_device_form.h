#pragma once

#include <functional>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"
#include "session/shared_state.h"

namespace kelvane {

/// "Select I/O device": chooses the machine of the next transfers. It writes no file. A
/// list of machines that cannot be read is told, and there is no choice then.
class select_device_form_lite : public Form {
  public:
    /// `state` gets the chosen machine's position and name.
    select_device_form_lite(Platform& platform, Shared_state& state);

    Label Label1{"Label1", "Select machine:"};
    List_box IO_device_lst{"IO_device_lst", "Select machine:"};
    Button Command1{"Command1", "Select"};
    Button Command2{"Command2", "Close"};

    /// Run after a choice, before the form is unloaded.
    std::function<void()> on_selected;

  protected:
    void on_load() override;
    void on_unload() override { tasks_.end_all(); }

  private:
    void select();
    Task<> tell_unreadable(std::string reason);

    Platform& platform_;
    Shared_state& state_;
    Task_keeper tasks_;
};

}  // namespace kelvane
