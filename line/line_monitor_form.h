#pragma once

#include "line/line_view.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"

namespace kelvane {

/// "Line monitor": what crosses the line during any transfer, beside the main window.
class Line_monitor_form : public Form {
  public:
    /// Both outlive the form. It watches the line only while it is loaded.
    Line_monitor_form(Platform& platform, Line_watch& watch);

    Line_view view;                                 ///< held while paused
    Button Pause_button{"Pause_button", "&Pause"};  ///< "&Go on" while paused
    Button Clear_button{"Clear_button", "C&lear"};
    Button Copy_button{"Copy_button", "&Copy"};
    /// Writes all that is kept to a file that the operator chooses; a failure is told in a box.
    Button Save_button{"Save_button", "Sa&ve..."};
    Button Close_button{"Close_button", "Close"};

  protected:
    void on_load() override;
    void on_unload() override { view.close(); }

  private:
    void pause(bool paused);
    Task<> save();

    Platform& platform_;
    Task_keeper tasks_;
};

}  // namespace kelvane
