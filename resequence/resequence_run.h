#pragma once

#include <optional>
#include <string>

#include "frame/main_window.h"
#include "resequence/engine.h"
#include "resequence/resequence_form.h"

namespace kelvane {

/// What the dialog's "Resequence" button does: renumbers the working copy of `filename`, puts the
/// result in the file's place with the original beside it as its ".bak" file, and reports in the
/// editor, with the new text behind the report. The file is whole at every moment, whatever fails.
class Resequence_run {
  public:
    /// Takes over the form's button. Both outlive the run.
    Resequence_run(Kelvane_lite_form& window, resequence_form_lite& form);
    Resequence_run(const Resequence_run&) = delete;
    Resequence_run& operator=(const Resequence_run&) = delete;

    /// Works on `filename`, the form's options and the working copy. Returns at once while a run is
    /// on.
    void Resequence_button_Click();

  private:
    /// Why a run failed; empty when it did not.
    using Failure = std::string;

    void run();
    [[nodiscard]] bool goes_on(int percent);
    void show_refusal(const Resequence_result& result);
    [[nodiscard]] Failure put_in_place(const std::string& text, const std::string& filename);
    void report(const std::string& text);
    void end();

    Kelvane_lite_form& window_;
    resequence_form_lite& form_;
};

}  // namespace kelvane
