#include "resequence/resequence_run.h"

#include <utility>

#include "resequence/report.h"
#include "session/file_names.h"

namespace kelvane {

/// What the operator sees of a run, whatever ends it.
class Resequence_run::Running {
  public:
    Running(Window_system& windows, resequence_form_lite& form) : windows_(windows), form_(form) {
        form_.running = 1;
        windows_.set_hourglass(true);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() {
        windows_.set_hourglass(false);
        form_.running = 0;
    }

  private:
    Window_system& windows_;
    resequence_form_lite& form_;
};

Resequence_run::Resequence_run(Platform& platform, Operator& op, Transfer_control& control,
                               const Shared_state& state, resequence_form_lite& form)
    : platform_(platform), op_(op), control_(control), state_(state), form_(form) {
    form_.Resequence_button.on_click = [this] { form_.tasks.start(Resequence_button_Click()); };
}

Task<> Resequence_run::Resequence_button_Click() {
    if (form_.running == 1) {
        co_return;
    }
    const Transfer_control::Work at_work(control_);
    std::string refusal;
    {
        const Running running(platform_.windows, form_);
        refusal = co_await run();
    }
    op_.set_progress(0);
    if (refusal.empty()) {
        form_.unload();
        op_.beep();
    } else {
        const Task<Message_answer> box =
            op_.box(refusal, Message_icon::exclamation, Message_buttons::ok, "Resequence error");
        co_await box;
    }
}

Task<std::string> Resequence_run::run() {
    const Resequence_options options = form_.options();
    if (options.maximum_with_gotos()) {
        co_return refusal_text(Maximum_with_gotos{});
    }
    const std::string filename = state_.filename;
    const auto program = platform_.files.read(platform_.files.program_path(file_names::scratch));
    if (!program) {
        report(
            failure_report(filename, "Its working copy cannot be read: " + program.reason() + "."));
        co_return std::string();
    }
    Resequence_progress progress = [this](int percent) { return goes_on(percent); };
    const auto result = co_await resequence(*program, options, std::move(progress));
    if (const auto* done = std::get_if<Resequenced>(&result)) {
        const std::string failure = put_in_place(done->text, filename);
        if (failure.empty()) {
            form_.renumbered = true;
            op_.show_text(success_report(filename, backup_path(filename)) + done->text);
        } else {
            report(failure_report(filename, failure));
        }
    } else if (std::holds_alternative<Fault>(result)) {
        report(failure_report(filename, refusal_text(result)));
    } else if (!std::holds_alternative<Resequence_cancelled>(result)) {
        co_return refusal_text(result);
    }
    co_return std::string();
}

Task<bool> Resequence_run::goes_on(int percent) {
    op_.set_progress(percent);
    co_await platform_.loop.breath();
    co_return !control_.stop_asked();
}

std::string Resequence_run::put_in_place(const std::string& text, const std::string& filename) {
    Files& files = platform_.files;
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
    op_.show_text(text + op_.shown_text());
}

}  // namespace kelvane
