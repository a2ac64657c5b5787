#include "frame/commands.h"

#include <memory>
#include <utility>

#include "platform/basic_text.h"
#include "platform/file_pieces.h"
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

Task<Outcome> Commands::send(bool binary, std::optional<Program_part> part) {
    const Running_command running(running_);
    window_.state.TX_binary = binary ? -1 : 0;
    if (binary) {
        window_.state.binaryfilename = window_.state.filename;
    }
    const std::string path = window_.state.filename;
    const Outcome outcome = co_await transfer_.Start_transfer(Transfer::send, std::move(part));
    note_send(path, outcome);
    co_return outcome;
}

void Commands::note_send(const std::string& path, Outcome outcome) {
    if (const auto line = window_.control.last_line()) {
        broken_send_ = {path, *line};
        if (on_broken_send) {
            on_broken_send(*broken_send_);
        }
    } else if (outcome == Outcome::done) {
        broken_send_.reset();
    }
}

Task<Outcome> Commands::receive(bool binary) {
    const Running_command running(running_);
    window_.state.RX_binary = binary;
    window_.control.enable_stop();
    const std::string path = window_.state.filename;
    Received_file received{path, {}};
    received.before = co_await old_program(path);
    const Outcome outcome = co_await transfer_.Start_transfer(Transfer::receive);
    window_.state.RX_binary = false;
    if (outcome == Outcome::done && !binary) {
        co_await note_receive(std::move(received));
    }
    co_return outcome;
}

/// What stands in the file that a receive is about to replace.
Task<std::optional<std::string>> Commands::old_program(std::string path) const {
    constexpr std::uint64_t most_kept = std::uint64_t{16} << 20U;  // bytes
    const Files& files = window_.platform.files;
    if (!files.exists(path) || files.length(path).value_or(most_kept) >= most_kept) {
        co_return std::nullopt;
    }
    auto content = co_await read_in_pieces(window_.platform.loop, files, std::move(path));
    co_return content ? std::optional(*std::move(content)) : std::nullopt;
}

Task<> Commands::note_receive(Received_file received) {
    const Files& files = window_.platform.files;
    if (!files.exists(received.path)) {
        co_return;  // saved as programs of their own
    }
    bool differs = false;
    if (received.before) {
        const auto now = co_await read_in_pieces(window_.platform.loop, files, received.path);
        if (!now) {
            co_return;
        }
        differs = *received.before != *now;
    }
    offer_.reset();
    if (differs) {
        offer_ = received.path;
        window_.control.add_note("It differs from what was there: Tools, Compare shows where");
    }
    received_ = std::move(received);
}

Task<bool> Commands::print() {
    const Running_command running(running_);
    co_return co_await listing_.Print_listing();
}

Task<bool> Commands::resequence() {
    const Running_command running(running_);
    if (is_backup(window_.state.filename)) {
        const Message refusal{
            "Can't resequence files with a .BAK extension\nbecause a .BAK file is automatically "
            "created",
            "Can't resequence", Message_icon::critical, Message_buttons::ok};
        co_await window_.ask(refusal);
        co_return false;
    }
    window_.control.begin_stoppable_work();
    std::shared_ptr<const std::string> content;
    const auto trouble = co_await Make_scratchpad_copy(
        window_.platform.loop, window_.platform.files, window_.state.filename, content);
    if (trouble) {
        co_await window_.ask(*trouble);
        co_return false;
    }
    co_await resequence_form_.show_modal();
    co_return resequence_form_.renumbered;
}

}  // namespace kelvane
