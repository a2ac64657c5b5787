#pragma once

#include <vector>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"
#include "session/transfer_log.h"

namespace kelvane {

/// "Transfer log": what has been sent and received on this computer, the newest first, with a
/// filter, to be saved for a spreadsheet.
class Transfer_log_form : public Form {
  public:
    explicit Transfer_log_form(Platform& platform);

    // The table shows what both of these let through.
    Text_box Filter_txt{"Filter_txt", "&Only with:"};   ///< words that a transfer must have
    List_box Kind_lst{"Kind_lst", "&Show:"};            ///< all, sent, received, not done
    Table Transfers_tbl{"Transfers_tbl", "Transfers"};  ///< under `transfer_log_columns`
    Label count_label{"count_label"};  ///< "3 of 340 transfers", or why there are none
    /// Writes what the table shows to a file that the operator chooses; a failure is told in a box.
    Button Export_button{"Export_button", "&Export..."};
    Button Close_button{"Close_button", "Close"};

    /// Reads the log again, when the window is there.
    void renew();

  protected:
    void on_load() override;
    void on_unload() override { tasks_.end_all(); }

  private:
    void show_chosen();
    [[nodiscard]] std::vector<Logged_transfer> of_chosen_kind() const;
    Task<> save();

    Platform& platform_;
    Task_keeper tasks_;
    std::vector<Logged_transfer> transfers_;  ///< as UTF-8, as words are typed
};

}  // namespace kelvane
