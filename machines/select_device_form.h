#pragma once

#include <functional>

#include "platform/controls.h"
#include "platform/files.h"
#include "platform/form.h"
#include "session/shared_state.h"

namespace kelvane {

/// "Select I/O device": chooses the machine of the next transfers. It writes no file.
class select_device_form_lite : public Form {
  public:
    /// `state` gets the chosen machine's position and name.
    select_device_form_lite(Window_system& windows, const Files& files, Shared_state& state);

    Label Label1{"Label1", "Select machine:"};
    List_box IO_device_lst{"IO_device_lst", "Select machine:"};
    Button Command1{"Command1", "Select"};
    Button Command2{"Command2", "Close"};

    /// Run after a choice, before the form is unloaded.
    std::function<void()> on_selected;

  protected:
    void on_load() override;

  private:
    void select();

    const Files& files_;
    Shared_state& state_;
};

}  // namespace kelvane
