#include "transmit/text_send.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"
#include "platform/lines.h"
#include "session/file_names.h"
#include "transmit/line_options.h"
#include "transmit/scratch_copy.h"
#include "transmit/send_notes.h"
#include "transmit/switchbox.h"

namespace kelvane {

namespace {

/// The readable leader and the tail are bit patterns, not text: sent as they are.
constexpr Tape_code as_it_is = Tape_code::ascii_no_parity;

/// The working copy goes with its send, whatever ends that.
class Working_copy {
  public:
    Working_copy(Files& files, const std::string& path) : files_(files), path_(path) {}
    Working_copy(const Working_copy&) = delete;
    Working_copy& operator=(const Working_copy&) = delete;
    ~Working_copy() { files_.remove(path_); }

  private:
    Files& files_;
    const std::string& path_;
};

std::size_t line_count(std::string_view program) {
    std::size_t count = 0;
    for (Lines lines(program); !lines.at_end(); lines.take()) {
        ++count;
    }
    return count;
}

Readable_leader leader_and_tail(const Transfer_options& options, const std::string& path) {
    return options.readable_leader ? readable_leader(path, options.TX_code, options.trailer)
                                   : Readable_leader{{}, options.trailer, {}};
}

}  // namespace

Text_send::Text_send(const Session& session, const Transfer_options& options, Text_sender& sender,
                     std::string path)
    : session_(session),
      control_(session.control),
      options_(options),
      sender_(sender),
      path_(std::move(path)),
      copy_(session.files.program_path(file_names::scratch)),
      readable_(leader_and_tail(options, path_)),
      lines_(session.files) {}

Task<Transfer_end> Text_send::run() {
    if (auto refusal = prepare()) {
        co_return std::move(*refusal);
    }
    const Working_copy copy(session_.files, copy_);
    if (auto refusal = co_await Send_switchbox_codes(session_, options_, sender_)) {
        co_return std::move(*refusal);
    }
    co_await wait_for_start(session_, sender_);
    if (control_.IOsend_cancel() != 1 && !sender_.given_up()) {
        co_await send_program();
    }
    co_return end();
}

/// Makes the working copy, shows it, and tries the whole expansion of called files, so that nothing
/// leaves of a program that cannot be sent to its end.
std::optional<Transfer_end> Text_send::prepare() {
    session_.op.show_text("Creating copy of file " + path_);
    if (auto trouble = Make_scratchpad_copy(session_.files, path_)) {
        return end_with(Outcome::refused, std::move(*trouble));
    }
    auto program = session_.files.read(copy_);
    if (!program) {
        session_.files.remove(copy_);
        return end_with(Outcome::refused,
                        critical_box("Cannot access file\n" + copy_ + "\n" + program.reason(),
                                     "Disk read error"));
    }
    program_ = *std::move(program);
    session_.op.show_text(program_);
    control_.set_hold(false);
    lines_.open(copy_, path_, session_.state.default_path);
    if (const auto error = lines_.check()) {
        session_.files.remove(copy_);
        return end_with(Outcome::refused, critical_box(expansion_error_text(*error)));
    }
    control_.expect(lines_.total(), line_count(program_));
    control_.set_caution(notes_before_send(program_, options_, sender_.tables()));
    return std::nullopt;
}

Transfer_end Text_send::end() const {
    if (lines_.error()) {
        return end_with(Outcome::fault, critical_box(expansion_error_text(*lines_.error()) +
                                                     "\nThe transfer has ended before its end."));
    }
    Transfer_end end;
    end.outcome = all_sent_ ? Outcome::done : Outcome::stopped;
    return end;
}

Task<> wait_for_start(const Session& session, Text_sender& sender) {
    Transfer_control& control = session.control;
    control.happens(Transfer_event::send_prepared);
    while (control.IOsend_cancel() != 1 && control.Sendit_now() == 0 && !sender.given_up()) {
        if (sender.take_handshakes()) {
            control.machine_starts();
        } else {
            co_await session.loop.next();
        }
    }
}

Task<> Text_send::send_program() {
    do {
        co_await send_pass();
        if (sender_.given_up() || control_.DNC_alarm || control_.DNC_cycle == 0) {
            break;
        }
        begin_next_cycle();
    } while (!ends_between_lines());
}

Task<> Text_send::send_pass() {
    co_await sender_.sendit2(readable_.leader, as_it_is);
    co_await sender_.sendit2(options_.leader, options_.TX_code);
    co_await send_all_lines();
    if (sender_.given_up() || lines_.error() || control_.DNC_alarm || ends_between_lines()) {
        co_return;
    }
    co_await sender_.sendit2(readable_.trailer, options_.TX_code);
    co_await sender_.sendit2(readable_.tail, as_it_is);
    all_sent_ = !sender_.given_up();
}

Task<> Text_send::send_all_lines() {
    std::string line;
    lines_.Get_next_line(Sub_file_reader::reset, line);
    while (!sender_.given_up() && lines_.Get_next_line(1, line)) {
        show_line(line);
        if (control_.DNC_alarm || ends_between_lines()) {
            co_return;
        }
        if (auto block = line_as_sent(line, options_)) {
            *block += options_.TX_eob;
            co_await sender_.sendit(std::move(*block), options_.TX_code);
        }
        count_line(line);
    }
}

void Text_send::show_line(const std::string& line) {
    if (const auto offset = lines_.main_offset()) {
        control_.at_line(number_of_line(*offset), line);
        session_.op.select_text(*offset, line.size());
    }
}

/// Number, from 1, of the program's line that begins at `offset`: counted on from the line before,
/// or from the start where a new pass begins.
std::size_t Text_send::number_of_line(std::size_t offset) {
    if (offset < line_offset_) {
        lines_before_ = 0;
        line_offset_ = 0;
    }
    lines_before_ +=
        line_count(std::string_view(program_).substr(line_offset_, offset - line_offset_));
    line_offset_ = offset;
    return lines_before_ + 1;
}

void Text_send::count_line(const std::string& line) {
    sent_count_ += line.size() + cr_lf.size();
    control_.count_program(sent_count_);
    if (const std::uint64_t total = lines_.total(); total > 0) {
        session_.op.set_progress(static_cast<int>(sent_count_ * 100 / total % 100));
    }
}

void Text_send::begin_next_cycle() {
    if (control_.DNC_cycle == 1) {
        control_.set_hold(true);
    }
    all_sent_ = false;
    sent_count_ = options_.leader.size() + cr_lf.size();
    session_.op.set_progress(0);
    session_.op.select_text(0, 0);
}

// Under Xon/Xoff a press of Stop only pauses: the flow control holds the output until Send or a
// second press. Without it the send ends here.
bool Text_send::ends_between_lines() const {
    const bool paused = options_.Xonhs && control_.Stopped() != 0;
    return control_.IOsend_cancel() == 1 && !paused;
}

}  // namespace kelvane
