#include "resequence/resequence_run.h"

#include <utility>

#include "resequence/report.h"
#include "session/file_names.h"

namespace kelvane {

Resequence_run::Resequence_run(Kelvane_lite_form& window, resequence_form_lite& form)
    : window_(window), form_(form) {
    form_.Resequence_button.on_click = [this] { Resequence_button_Click(); };
}

void Resequence_run::Resequence_button_Click() {
    if (form_.running == 1) {
        return;
    }
    const Transfer_control::Work at_work(window_.control);
    form_.running = 1;
    window_.platform.windows.set_hourglass(true);
    run();
    window_.platform.windows.set_hourglass(false);
    form_.running = 0;
}

void Resequence_run::run() {
    const Resequence_options options = form_.options();
    if (options.maximum_with_gotos()) {
        show_refusal(Maximum_with_gotos{});
        return;
    }
    Files& files = window_.platform.files;
    const std::string filename = window_.state.filename;
    const auto program = files.read(files.program_path(file_names::scratch));
    if (!program) {
        report(
            failure_report(filename, "Its working copy cannot be read: " + program.reason() + "."));
        end();
        return;
    }
    const auto result =
        resequence(*program, options, [this](int percent) { return goes_on(percent); });
    if (const auto* done = std::get_if<Resequenced>(&result)) {
        const Failure failure = put_in_place(done->text, filename);
        if (failure.empty()) {
            window_.show_text(success_report(filename, backup_path(filename)) + done->text);
        } else {
            report(failure_report(filename, failure));
        }
    } else if (std::holds_alternative<Fault>(result)) {
        report(failure_report(filename, refusal_text(result)));
    } else if (!std::holds_alternative<Resequence_cancelled>(result)) {
        show_refusal(result);
        return;
    }
    end();
}

bool Resequence_run::goes_on(int percent) {
    window_.set_progress(percent);
    window_.platform.loop.process_pending();
    return !window_.control.stop_asked();
}

/// The dialog stays open, so that the operator can change the options.
void Resequence_run::show_refusal(const Resequence_result& result) {
    window_.set_progress(0);
    window_.platform.windows.set_hourglass(false);
    window_.box_now(refusal_text(result), Message_icon::exclamation, Message_buttons::ok,
                    "Resequence error");
}

Resequence_run::Failure Resequence_run::put_in_place(const std::string& text,
                                                     const std::string& filename) {
    Files& files = window_.platform.files;
    const std::string backup = backup_path(filename);
    const std::string staged = files.program_path(file_names::scratch_resequenced);
    if (const auto done = files.replace(staged, text); !done) {
        return "The new text cannot be written to '" + staged + "': " + done.reason() + ".";
    }
    const std::string kept = "\nThe new text is in '" + staged + "'.";
    if (const auto done = files.copy(filename, backup); !done) {
        return "Its backup '" + backup + "' cannot be written: " + done.reason() + "." + kept;
    }
    if (const auto done = files.replace(filename, text); !done) {
        return "The file cannot be written: " + done.reason() + ".\nIts backup is '" + backup +
               "'." + kept;
    }
    files.remove(staged);
    files.remove(files.program_path(file_names::scratch));
    return {};
}

void Resequence_run::report(const std::string& text) {
    window_.show_text(text + window_.Text1.text());
}

void Resequence_run::end() {
    window_.set_progress(0);
    form_.unload();
    window_.platform.desktop.beep();
}

}  // namespace kelvane
