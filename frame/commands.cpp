#include "frame/commands.h"

#include "platform/basic_text.h"
#include "transmit/scratch_copy.h"

namespace kelvane {

namespace {

/// Counts a command for as long as its task lives.
class Running_command {
  public:
    explicit Running_command(int& count) : count_(count) { ++count_; }
    Running_command(const Running_command&) = delete;
    Running_command& operator=(const Running_command&) = delete;
    ~Running_command() { --count_; }

  private:
    int& count_;
};

bool is_backup(const std::string& name) {
    return name.size() >= 4 && lower_case(name.substr(name.size() - 4)) == ".bak";
}

}  // namespace

Commands::Commands(Kelvane_lite_form& window, Transfer& transfer, Program_listing& listing,
                   resequence_form_lite& resequence_form)
    : window_(window), transfer_(transfer), listing_(listing), resequence_form_(resequence_form) {}

Task<Outcome> Commands::send(bool binary) {
    const Running_command running(running_);
    window_.state.TX_binary = binary ? -1 : 0;
    if (binary) {
        window_.state.binaryfilename = window_.state.filename;
    }
    co_return co_await transfer_.Start_transfer(Transfer::send);
}

Task<Outcome> Commands::receive(bool binary) {
    const Running_command running(running_);
    window_.state.RX_binary = binary;
    window_.Stop_button.set_enabled(true);
    const Outcome outcome = co_await transfer_.Start_transfer(Transfer::receive);
    window_.state.RX_binary = false;
    co_return outcome;
}

Task<> Commands::print() {
    const Running_command running(running_);
    co_await listing_.Print_listing();
}

Task<> Commands::resequence() {
    const Running_command running(running_);
    if (is_backup(window_.state.filename)) {
        const Message refusal{
            "Can't resequence files with a .BAK extension\nbecause a .BAK file is automatically "
            "created",
            "Can't resequence", Message_icon::critical, Message_buttons::ok};
        co_await window_.ask(refusal);
        co_return;
    }
    window_.control.begin_stoppable_work();
    if (const auto trouble = Make_scratchpad_copy(window_.platform.files, window_.state.filename)) {
        co_await window_.ask(*trouble);
        co_return;
    }
    co_await resequence_form_.show_modal();
}

}  // namespace kelvane
