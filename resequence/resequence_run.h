#pragma once

#include <optional>
#include <string>

#include "platform/platform.h"
#include "resequence/engine.h"
#include "resequence/resequence_form.h"
#include "session/operator.h"
#include "session/shared_state.h"
#include "session/transfer_control.h"

namespace kelvane {

/// What the dialog's "Resequence" button does: renumbers the working copy of `filename`, puts the
/// result in the file's place with the original beside it as its ".bak" file, and reports in the
/// editor, with the new text behind the report. The file is whole at every moment, whatever fails.
class Resequence_run {
  public:
    /// Takes over the form's button. All outlive the run.
    Resequence_run(Platform& platform, Operator& op, Transfer_control& control,
                   const Shared_state& state, resequence_form_lite& form);
    Resequence_run(const Resequence_run&) = delete;
    Resequence_run& operator=(const Resequence_run&) = delete;

    /// Works on `filename`, the form's options and the working copy, unless a run is on. It lets
    /// others in, and Stop ends it with nothing changed.
    Task<> Resequence_button_Click();

  private:
    class Running;
    /// The operator's words for a run that leaves the dialog open, so that the options can be
    /// changed; empty for all others.
    Task<std::string> run();
    Task<bool> goes_on(int percent);
    /// Why it failed, in sentences for the report; empty when it did not.
    [[nodiscard]] std::string put_in_place(const std::string& text, const std::string& filename);
    void report(const std::string& text);

    Platform& platform_;
    Operator& op_;
    Transfer_control& control_;
    const Shared_state& state_;
    resequence_form_lite& form_;
};

}  // namespace kelvane
