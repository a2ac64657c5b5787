#include "line/test_line_form.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/basic_text.h"
#include "session/line_trouble.h"

namespace kelvane {

namespace {

using namespace std::chrono_literals;

constexpr int look_ms = 100;
/// So long a character may be on its way through adapters and cables.
constexpr Clock_time patience = 1s;
/// The loop-back test hands its characters over as a sender does, so that Stop holds at once.
constexpr std::size_t chunk = 5;
constexpr std::size_t room_for_next = 2;

std::string all_characters() {
    std::string all(256, '\0');
    for (std::size_t code = 0; code < all.size(); ++code) {
        all[code] = static_cast<char>(code);
    }
    return all;
}

std::string named_signal(const char* name, std::optional<bool> on) {
    return std::string(name) + ": " + (!on ? "not known" : *on ? "on" : "off");
}

std::string count_of(std::size_t count) {
    return decimal(static_cast<std::int64_t>(count));
}

}  // namespace

Test_line_form::Test_line_form(Platform& platform, const Transfer_control& control,
                               Line_watch& watch, std::function<Tested_line()> selected)
    : Form(platform.windows, "Test_line_form", "Test line"),
      view(platform, watch),
      platform_(platform),
      port_(platform.port),
      control_(control),
      selected_(std::move(selected)),
      look_(platform.loop, look_ms),
      tasks_(platform.loop) {
    machine_label.plain = true;
    state_label.plain = true;
    attach_handlers();
}

void Test_line_form::attach_handlers() {
    Open_button.on_click = [this] { open_line(); };
    chk_DTR.on_click = [this] {
        if (ours()) {
            port_.set_signal(Own_signal::dtr, chk_DTR.checked());
        }
    };
    chk_RTS.on_click = [this] {
        if (ours()) {
            port_.set_signal(Own_signal::rts, chk_RTS.checked());
        }
    };
    DC1_button.on_click = [this] { send(std::string(1, line_.port.xon)); };
    DC3_button.on_click = [this] { send(std::string(1, line_.port.xoff)); };
    Line_txt.on_enter = [this] { send_line(); };
    Send_line_button.on_click = [this] { send_line(); };
    Loop_back_button.on_click = [this] { press_loop_back(); };
    Clear_button.on_click = [this] { view.clear(); };
    Close_button.on_click = [this] { close(); };
    look_.on_tick = [this] { look(); };
}

void Test_line_form::on_load() {
    view.open();
    open_line();
}

void Test_line_form::on_unload() {
    if (ours()) {
        port_.close();
    }
    let_go({});
    tasks_.end_all();
    set_looping(false);
    view.close();
}

bool Test_line_form::ours() const {
    return open_ && control_.busy() == 0 && port_.is_open();
}

void Test_line_form::open_line() {
    if (ours()) {
        return;
    }
    line_ = selected_();
    machine_label.set_caption(line_.name);
    loop_back_label.set_caption({});
    if (const std::string trouble = open_port(); !trouble.empty()) {
        let_go(trouble);
        return;
    }
    open_ = true;
    state_label.set_caption("The line is open.");
    chk_DTR.set_checked(true);
    chk_RTS.set_checked(true);
    set_live(true);
    look();
    look_.set_enabled(true);
    tasks_.start(listen());
}

/// Why it cannot be opened; empty when it has been.
std::string Test_line_form::open_port() {
    if (control_.busy() != 0 || port_.is_open()) {
        return "A transfer uses the line. Open it again when that has ended.";
    }
    if (!line_.trouble.empty()) {
        return line_.trouble;
    }
    return port_.open(line_.port).reason();
}

/// The line is closed, or another's.
void Test_line_form::let_go(const std::string& why) {
    open_ = false;
    stop_looping_ = true;
    look_.set_enabled(false);
    show_signals();
    set_live(false);
    state_label.set_caption(why);
}

void Test_line_form::set_live(bool live) {
    for (Control* control : std::initializer_list<Control*>{
             &chk_DTR, &chk_RTS, &DC1_button, &DC3_button, &Line_txt, &Send_line_button,
             &Loop_back_button, &cts_label, &dsr_label, &dcd_label, &ri_label}) {
        control->set_enabled(live);
    }
    Open_button.set_enabled(!live);
}

void Test_line_form::send(const std::string& bytes) {
    if (ours()) {
        port_.output(bytes);
    }
}

void Test_line_form::send_line() {
    send(line_.on_wire(Line_txt.text()));
}

/// Fetches what comes in, which the view has seen then, until the line is no longer ours.
Task<> Test_line_form::listen() {
    while (ours()) {
        const std::string bytes = port_.input(0);
        returned_ += looping_ ? bytes : "";
        co_await platform_.loop.next();
    }
    if (open_) {
        let_go(control_.busy() != 0 ? "A transfer has taken the line over."
                                    : port_.lost().value_or("The line has been closed."));
    }
}

void Test_line_form::look() {
    if (ours()) {
        show_signals();
        show_errors();
    }
}

void Test_line_form::show_signals() {
    const auto signals = ours() ? port_.machine_signals() : std::nullopt;
    const auto show = [&signals](Label& label, const char* name, bool Machine_signals::*signal) {
        label.set_caption(
            named_signal(name, signals ? std::optional((*signals).*signal) : std::nullopt));
    };
    show(cts_label, "CTS", &Machine_signals::cts);
    show(dsr_label, "DSR", &Machine_signals::dsr);
    show(dcd_label, "DCD", &Machine_signals::dcd);
    show(ri_label, "RI", &Machine_signals::ri);
}

void Test_line_form::show_errors() {
    const Line_errors errors = port_.line_errors();
    const std::string sentence = line_errors_text(errors, view.from_machine());
    errors_label.set_caption("Framing errors " + decimal(errors.framing) + ", parity errors " +
                             decimal(errors.parity) + ", overruns " + decimal(errors.overrun) +
                             ", breaks " + decimal(errors.breaks) +
                             (sentence.empty() ? "" : "\n" + sentence));
}

void Test_line_form::press_loop_back() {
    stop_looping_ = looping_;
    if (!looping_) {
        set_looping(true);
        tasks_.start(loop_back());
    }
}

void Test_line_form::set_looping(bool looping) {
    looping_ = looping;
    Loop_back_button.set_caption(looping ? "Stop loop-&back test" : "Loop-&back test");
}

Task<> Test_line_form::loop_back() {
    const std::string all = all_characters();
    Event_loop& loop = platform_.loop;
    std::size_t sent = 0;
    returned_.clear();
    Clock_time last = loop.now();
    while (ours() && !stop_looping_ && returned_.size() < all.size() &&
           loop.now() < last + patience) {
        if (sent < all.size() && port_.out_buffer_count() <= room_for_next) {
            port_.output(std::string_view(all).substr(sent, chunk));
            sent = std::min(sent + chunk, all.size());
            last = loop.now();
        }
        co_await loop.next();
    }
    const bool stopped = stop_looping_ || !ours();
    set_looping(false);
    loop_back_label.set_caption(stopped ? "Stopped: " + count_of(sent) + " characters sent, " +
                                              count_of(returned_.size()) + " came back."
                                        : loop_back_result(all));
}

std::string Test_line_form::loop_back_result(const std::string& sent) const {
    if (returned_ == sent) {
        return "All 256 characters came back as they were sent.";
    }
    if (returned_.empty()) {
        return "Nothing came back: pins 2 and 3 of the plug are not joined, or it is not the plug "
               "of this port.";
    }
    const auto [expected, came] =
        std::mismatch(sent.begin(), sent.end(), returned_.begin(), returned_.end());
    const std::string count = count_of(returned_.size()) + " of 256 characters came back";
    if (expected == sent.end()) {
        return "More than the 256 characters came back: something else sends on this line.";
    }
    const std::string first = readable_bytes({&*expected, 1}, Line_form::hex);
    if (came == returned_.end()) {
        return count + ", none after the one before hex " + first + ".";
    }
    return count + "; the first difference: hex " + first + " was sent, " +
           readable_bytes({&*came, 1}, Line_form::hex) + " came.";
}

}  // namespace kelvane
