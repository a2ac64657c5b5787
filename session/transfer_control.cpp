#include "session/transfer_control.h"

#include <utility>

#include "platform/files.h"
#include "session/control_characters.h"
#include "session/line_trouble.h"

namespace kelvane {

Transfer_control::Transfer_control(Event_loop& loop, Serial_comm& port, Operator& op,
                                   Button& Send_button, Button& Stop_button, Label& status_label,
                                   State_field& state_field)
    : Timer5(loop, 50),
      Timer6(loop, 3000),
      Timer8(loop, 1000),
      Timer9(loop, 50),
      Timer12(loop, 50),
      Timer17(loop, 5000),
      exclamation_timer(loop, 0),
      loop_(loop),
      port_(port),
      op_(op),
      send_(Send_button),
      stop_(Stop_button),
      status_(loop, status_label, state_field) {
    send_.on_click = [this] { press_send(); };
    stop_.on_click = [this] { press_stop(); };
    for (Timer* delay : {&Timer9, &Timer12, &Timer17, &exclamation_timer}) {
        delay->on_tick = [delay] { delay->set_enabled(false); };
    }
}

bool Transfer_control::begin(Direction direction, std::string path) {
    if (busy_ != 0) {
        return false;
    }
    direction_ = direction;
    path_ = std::move(path);
    status_.begin_record(direction, path_);
    clear_flags();
    busy_ = 1;
    on_running(true);
    Timer5.set_enabled(false);
    Timer6.set_enabled(false);
    return true;
}

// A hold of the transfer before, by the operator or by its machine, would hold this one's select
// codes for ever: no machine is connected yet that could send an Xon.
void Transfer_control::clear_flags() {
    escape_ = 0;
    sending_ = 0;
    receiving_ = 0;
    IOsend_cancel_ = 0;
    Sendit_now_ = 0;
    Xoff_ = 0;
}

void Transfer_control::use(const std::string& machine, const std::string& port) {
    status_.begin(machine, port);
    happens(Transfer_event::begun);
}

void Transfer_control::begin_sending() {
    sending_ = 1;
    Enable_buttons();
}

void Transfer_control::set_times(const Times& times) {
    Timer6.set_interval(times.silence);
    Timer9.set_interval(times.character_delay);
    Timer12.set_interval(times.block_delay);
    exclamation_timer.set_interval(times.exclamation_delay);
}

void Transfer_control::enable_stop() {
    stop_.set_enabled(true);
}

void Transfer_control::wait_for_data() {
    status_.restart_count();
    happens(Transfer_event::receive_prepared);
}

bool Transfer_control::happens(Transfer_event event) {
    const auto next = state_after(state(), event);
    if (next) {
        status_.set(*next);
    }
    return next.has_value();
}

void Transfer_control::listen(Listener listener) {
    Timer5.on_tick = std::move(listener.poll);
    Timer6.on_tick = std::move(listener.silent);
    Timer8.on_tick = [this, answer = std::move(listener.answer)] {
        Timer8.set_enabled(false);
        answer();
    };
}

void Transfer_control::end_listening() {
    for (Timer* timer : {&Timer5, &Timer6, &Timer8}) {
        timer->set_enabled(false);
        timer->on_tick = nullptr;
    }
}

void Transfer_control::data_stored(std::size_t bytes, bool silence_ends) {
    receiving_ = 1;
    count_bytes(bytes);
    happens(Transfer_event::data_stored);
    Timer6.set_enabled(silence_ends);
    Timer8.set_enabled(false);
}

void Transfer_control::line_silent() {
    Timer5.set_enabled(false);
    Timer6.set_enabled(false);
    Timer8.set_enabled(false);
    Disable_buttons();
    port_.close();
    op_.beep();
    happens(Transfer_event::line_silent);
}

bool Transfer_control::machine_says(char byte) {
    const char character = without_parity(byte);
    if (character == control::dc3) {
        Xoff_ = 1;
    } else if (character == control::dc1) {
        Xoff_ = 0;
    }
    return character == control::dc1;
}

Task<> Transfer_control::end(Transfer_end end) {
    outcome_ = end.outcome;
    const bool ran = busy_ != 0;
    last_line_ = end.last_line;
    if (beeps_at(end)) {
        op_.beep();
    }
    rest();
    if (direction_ == Direction::receive && end.outcome == Outcome::stopped) {
        Disable_buttons();
    } else {
        Enable_buttons();
    }
    if (end.holds_stop) {
        Stopped_ = 1;
        Xoff_ = 1;
        stop_.set_caption("Reset");
    } else if (direction_ == Direction::send && Stopped_ != 0) {
        reset_stop();
    }
    add_remark(end, line_remark(end));
    op_.show_text(end.log);
    op_.set_progress(0);
    const std::string result = ran ? result_of(end.outcome, end.remarks) : std::string();
    happens(Transfer_event::ended);
    status_.end(ran ? result : end.note);
    if (ran) {
        status_.add_end(end.note, end.remarks);
    }
    if (end.box) {
        const Message box = *end.box;
        const Message_answer answer = co_await op_.ask(box);
        if (answer == Message_answer::configure) {
            op_.configure();
        }
    }
}

/// What has gone wrong on the line; of a send, only what came in is counted there.
std::string Transfer_control::line_remark(const Transfer_end& end) const {
    if (end.outcome == Outcome::refused || end.outcome == Outcome::fault) {
        return {};
    }
    const bool received = direction_ == Direction::receive;
    return line_errors_text(port_.line_errors(),
                            received ? static_cast<std::size_t>(status_.bytes()) : 0);
}

std::string Transfer_control::result_of(Outcome outcome, const std::string& remarks) {
    Transfer_record record = status_.record();
    record.outcome = outcome;
    record.remarks = remarks;
    if (on_ended) {
        on_ended(record);
    }
    status_.set_result(record);
    return result_sentence(record);
}

std::string Transfer_control::activity_text() const {
    const Transfer_record record = status_.record();
    const bool send = direction_ == Direction::send;
    return name_of(path_) + (send ? " is being sent" : " is being received") +
           (record.total > 0 ? ", " + percent_text(record) : std::string());
}

// A receive has beeped when the line fell silent.
bool Transfer_control::beeps_at(const Transfer_end& end) const {
    return direction_ == Direction::send && end.outcome != Outcome::refused && !end.quiet;
}

void Transfer_control::rest() {
    for (Timer* timer :
         {&Timer5, &Timer6, &Timer8, &Timer9, &Timer12, &Timer17, &exclamation_timer}) {
        timer->set_enabled(false);
    }
    port_.close();
    busy_ = 0;
    sending_ = 0;
    receiving_ = 0;
    on_running(false);
}

Transfer_control::Running::~Running() {
    if (control_.busy_ != 0) {
        control_.outcome_ = Outcome::stopped;
        control_.rest();
        const std::string result = control_.result_of(Outcome::stopped, {});
        control_.happens(Transfer_event::ended);
        control_.status_.end(result);
    }
}

// A paused send goes on to its end: the press of Stop that paused it no longer counts.
void Transfer_control::press_send() {
    if (!happens(Transfer_event::send_pressed)) {
        return;
    }
    if (state() == Transfer_state::idle) {
        status_.set_hint("Nothing waits to be sent: choose a program with File > Send");
    }
    if (Stopped_ != 0) {
        IOsend_cancel_ = 0;
    }
    Sendit_now_ = 1;
    reset_stop();
}

void Transfer_control::press_stop() {
    if (!happens(Transfer_event::stop_pressed)) {
        return;
    }
    if (state() == Transfer_state::idle && work_ == 0 && Stopped_ == 0) {
        status_.set_hint("Nothing is being sent or received that could be stopped");
    }
    IOsend_cancel_ = 1;
    Sendit_now_ = 0;
    if (Stopped_ == 0) {
        Stopped_ = 1;
        Xoff_ = 1;
        stop_.set_caption("Reset");
    } else {
        Stopped_ = 0;
        escape_ = 1;
        stop_.set_caption("Stop");
    }
}

void Transfer_control::reset_stop() {
    Stopped_ = 0;
    Xoff_ = 0;
    stop_.set_caption("Stop");
}

void Transfer_control::Enable_buttons() {
    send_.set_enabled(true);
    stop_.set_enabled(true);
}

void Transfer_control::Disable_buttons() {
    send_.set_enabled(false);
    stop_.set_enabled(false);
}

void Transfer_control::give_up() {
    escape_ = 1;
    IOsend_cancel_ = 1;
    Stopped_ = 0;
    stop_.set_caption("Stop");
}

void Transfer_control::begin_closing() {
    closing_ = true;
    escape_ = 1;
    IOsend_cancel_ = 1;
}

Task<> Transfer_control::Delay(int count) {
    if (count <= 0) {
        co_return;
    }
    Timer17.set_interval(count);
    Timer17.set_enabled(true);
    while (Timer17.enabled()) {
        co_await loop_.next();
    }
}

Task<> Transfer_control::wait_for(Timer& timer) {
    if (timer.interval() <= 0) {
        co_return;
    }
    timer.set_enabled(true);
    while (timer.enabled() && escape_ != 1) {
        co_await loop_.next();
    }
    timer.set_enabled(false);
}

bool Transfer_control::may_start_work() const {
    return work_ == 0 && busy_ == 0 && !closing_;
}

void Transfer_control::begin_stoppable_work() {
    escape_ = 0;
    IOsend_cancel_ = 0;
    Stopped_ = 0;
    stop_.set_enabled(true);
}

void Transfer_control::end_stoppable_work() {
    stop_.set_enabled(false);
    reset_stop();
}

}  // namespace kelvane
