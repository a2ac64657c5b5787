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

/// Bytes of a long program in which calls are looked for between two breaths.
constexpr std::size_t looked_through_at_once = std::size_t{1} << 20U;

/// The working copy goes with its send, whatever ends that.
class Working_copy {
  public:
    explicit Working_copy(Files& files)
        : files_(files), path_(files.program_path(file_names::scratch)) {}
    Working_copy(const Working_copy&) = delete;
    Working_copy& operator=(const Working_copy&) = delete;
    ~Working_copy() { files_.remove(path_); }

  private:
    Files& files_;
    const std::string path_;
};

Readable_leader leader_and_tail(const Transfer_options& options, const std::string& path) {
    return options.readable_leader ? readable_leader(path, options.TX_code, options.trailer)
                                   : Readable_leader{{}, options.trailer, {}};
}

std::string starting_line(const std::optional<Program_part>& part) {
    return part ? " from line " + std::to_string(part->first_line + 1) : std::string();
}

}  // namespace

Text_send::Text_send(const Session& session, const Transfer_options& options, Text_sender& sender,
                     std::string path, std::optional<Program_part> part, Content known)
    : session_(session),
      control_(session.control),
      options_(options),
      sender_(sender),
      path_(std::move(path)),
      part_(std::move(part)),
      known_(std::move(known)),
      readable_(leader_and_tail(options, path_)),
      lines_(session.files) {}

Task<Transfer_end> Text_send::run() {
    session_.op.show_text("Creating copy of file " + path_ + starting_line(part_));
    Content content;
    auto trouble = co_await make_working_copy(content);
    if (trouble) {
        co_return end_with(Outcome::refused, std::move(*trouble));
    }
    const Working_copy copy(session_.files);
    const auto error = co_await prepare(std::move(content));
    if (error) {
        co_return end_with(Outcome::refused, critical_box(expansion_error_text(*error)));
    }
    auto refusal = co_await Send_switchbox_codes(session_, options_, sender_);
    if (refusal) {
        co_return std::move(*refusal);
    }
    co_await wait_for_start(session_, sender_);
    if (control_.IOsend_cancel() != 1 && !sender_.given_up()) {
        co_await send_program();
    }
    co_return end();
}

Task<std::optional<Message>> Text_send::make_working_copy(Content& content) {
    if (part_) {
        content = std::make_shared<const std::string>(std::move(part_->content));
        co_return co_await Write_scratchpad_copy(session_.loop, session_.files, *content);
    }
    content = std::move(known_);
    co_return co_await Make_scratchpad_copy(session_.loop, session_.files, path_, content);
}

/// Shows the working copy and tries the whole expansion of called files, so that nothing leaves of
/// a program that cannot be sent to its end.
Task<std::optional<Expansion_error>> Text_send::prepare(Content program) {
    session_.op.show_program(program);
    control_.set_hold(false);
    lines_.open(program, path_, session_.state.default_path);
    while (!lines_.look_through_main(looked_through_at_once)) {
        co_await session_.loop.breath();
    }
    auto error = lines_.check();
    if (!error && part_) {
        control_.expect(lines_.total(), part_->program_lines(lines_.main_lines()),
                        part_->first_line + 1);
    } else {
        control_.expect(lines_.total(), lines_.main_lines());
    }
    const std::string notes =
        co_await notes_before_send(session_.loop, *program, options_, sender_.tables());
    control_.set_caution(notes);
    co_return error;
}

Transfer_end Text_send::end() const {
    if (lines_.error()) {
        return end_with(Outcome::fault, critical_box(expansion_error_text(*lines_.error()) +
                                                     "\nThe transfer has ended before its end."));
    }
    Transfer_end end;
    end.outcome = all_sent_ ? Outcome::done : Outcome::stopped;
    if (part_ && all_sent_) {
        end.log = "File " + path_ + " has been sent" + starting_line(part_);
    }
    return end;
}

/// Of a line of the working copy, both from 1; none for a lead-in's.
std::optional<std::size_t> Text_send::program_line(std::size_t line) const {
    return part_ ? part_->program_line(line) : line;
}

void Text_send::tell_place(Transfer_end& end) {
    if (!begun_) {
        return;
    }
    note_left();
    std::string place = "No block has left for certain";
    if (last_left_) {
        end.last_line = program_line(last_left_->line);
        const std::string where = end.last_line ? "line " + std::to_string(*end.last_line)
                                                : std::string("in the lead-in");
        place = "The last block that has left for certain: " + where + ", " + last_left_->text;
    }
    end.note += (end.note.empty() ? "" : "  |  ") + place;
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
    begun_ = true;
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
            note_handed_over(line);
        }
        if (!sender_.given_up()) {
            count_line(line);
        }
    }
}

void Text_send::show_line(const std::string& line) {
    control_.at_line(program_line(lines_.main_line()).value_or(0), line);
    if (const auto offset = lines_.main_offset()) {
        session_.op.select_text(*offset, line.size());
    }
}

void Text_send::count_line(const std::string& line) {
    sent_count_ += line.size() + cr_lf.size();
    control_.count_program(sent_count_);
    if (const std::uint64_t total = lines_.total(); total > 0) {
        session_.op.set_progress(static_cast<int>(sent_count_ * 100 / total % 100));
    }
}

// The line of the working copy that calls a file stands for all lines of that file.
void Text_send::note_handed_over(const std::string& line) {
    if (!sender_.given_up()) {
        queued_.push_back({sender_.handed_over(), lines_.main_line(), line});
    }
    note_left();
}

// Of a port that has gone nobody knows what it still held.
void Text_send::note_left() {
    if (!session_.port.is_open()) {
        return;
    }
    const std::uint64_t left = sender_.handed_over() - session_.port.out_buffer_count();
    while (!queued_.empty() && queued_.front().end <= left) {
        last_left_ = std::move(queued_.front());
        queued_.pop_front();
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
