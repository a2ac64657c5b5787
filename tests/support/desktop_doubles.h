#pragma once

#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/desktop_services.h"
#include "platform/file_dialog.h"
#include "platform/form.h"
#include "platform/message_box.h"
#include "support/virtual_loop.h"

namespace kelvane::testing {

/// Whether a box with these buttons can be answered so.
inline bool can_answer(Message_buttons buttons, Message_answer answer) {
    switch (buttons) {
        case Message_buttons::yes_no:
            return answer == Message_answer::yes || answer == Message_answer::no;
        case Message_buttons::ok_cancel:
            return answer == Message_answer::ok || answer == Message_answer::cancel;
        case Message_buttons::save_discard_cancel:
            return answer == Message_answer::save || answer == Message_answer::discard ||
                   answer == Message_answer::cancel;
        case Message_buttons::save_again:
            return answer == Message_answer::save_as || answer == Message_answer::again ||
                   answer == Message_answer::cancel;
        case Message_buttons::convert_or_raw:
            return answer == Message_answer::convert || answer == Message_answer::raw ||
                   answer == Message_answer::cancel;
        case Message_buttons::ok_configure:
            return answer == Message_answer::ok || answer == Message_answer::configure;
        default:
            return answer == Message_answer::ok;
    }
}

/// Answers from a queue and records; a box that nobody expects, an expectation that no box meets,
/// and an answer that the box has no button for, fail the test.
class Scripted_message_box : public Message_box {
  public:
    ~Scripted_message_box() override {
        for (const Expectation& left : expected_) {
            ADD_FAILURE() << "no box has said \"" << left.part << "\"";
        }
    }
    Task<Message_answer> ask(Message message) override {
        const std::string all = message.title + "\n" + message.text;
        shown_.push_back(message);
        if (expected_.empty() && otherwise) {
            co_return otherwise(message);
        }
        if (expected_.empty()) {
            ADD_FAILURE() << "unexpected box \"" << all << '"';
            co_return message.buttons == Message_buttons::yes_no ? Message_answer::no
                                                                 : Message_answer::ok;
        }
        Expectation expectation = std::move(expected_.front());
        expected_.pop_front();
        if (message.buttons == Message_buttons::save_again &&
            expectation.answer == Message_answer::ok) {
            expectation.answer = Message_answer::cancel;  // "Close"
        }
        EXPECT_NE(all.find(expectation.part), std::string::npos)
            << "expected \"" << expectation.part << "\", box says: " << all;
        EXPECT_TRUE(can_answer(message.buttons, expectation.answer)) << "no such button: " << all;
        expectation.meanwhile();
        co_return expectation.answer;
    }

    /// The next box must hold `part` in its text or title, and is answered so; `meanwhile` runs
    /// while it is open.
    void expect(
        std::string part, Message_answer answer = Message_answer::ok,
        std::function<void()> meanwhile = [] {}) {
        expected_.push_back({std::move(part), answer, std::move(meanwhile)});
    }
    /// Answers boxes that nobody expects, where they are no failure.
    std::function<Message_answer(const Message&)> otherwise;
    [[nodiscard]] const std::vector<Message>& shown() const { return shown_; }
    /// Gives the memory back, too.
    void forget() { shown_ = std::vector<Message>(); }

  private:
    struct Expectation {
        std::string part;
        Message_answer answer;
        std::function<void()> meanwhile;
    };
    std::deque<Expectation> expected_;
    std::vector<Message> shown_;
};

/// Windows that are only remembered. While a modal window is open the loop runs on; a test acts in
/// it by events of the loop or by `when_shown`.
class Recorded_windows : public Window_system {
  public:
    explicit Recorded_windows(Virtual_loop& loop) : loop_(loop) {}
    void show(Form& form, bool) override {
        if (auto action = actions_.extract(form.name())) {
            loop_.after(Clock_time(0), action.mapped());
        }
    }
    void hide(Form&) override {}
    Task<> wait_while_visible(const Form& form) override {
        while (form.visible()) {
            co_await loop_.next();
        }
    }
    void repaint(Form&) override {}
    void set_hourglass(bool on) override { hourglass = on; }
    void end_program(int status) override {
        ended = true;
        exit_status = status;
    }

    /// Runs `action` as an event once a form of this name is shown.
    void when_shown(const std::string& form_name, std::function<void()> action) {
        actions_[form_name] = std::move(action);
    }
    bool ended = false;
    int exit_status = -1;
    bool hourglass = false;

  private:
    Virtual_loop& loop_;
    std::map<std::string, std::function<void()>> actions_;
};

/// Answers from its queues once it does not stay open; an empty queue is the operator's Cancel. A
/// file dialog for another purpose than the answer is meant for fails the test.
class Scripted_file_dialog : public File_dialog {
  public:
    struct Answer {
        File_purpose purpose;
        std::string path;
    };
    explicit Scripted_file_dialog(Event_loop& loop) : loop_(loop) {}
    Task<std::optional<std::string>> ask_file(File_purpose purpose) override {
        shown_title = std::exchange(title, {});
        shown_proposal = std::exchange(proposed, {});
        while (stays_open) {
            co_await loop_.next();
        }
        if (answers.empty()) {
            co_return otherwise ? otherwise(purpose) : std::nullopt;
        }
        const Answer answer = std::move(answers.front());
        answers.pop_front();
        EXPECT_EQ(answer.purpose, purpose) << answer.path;
        co_return answer.path;
    }
    Task<std::optional<std::string>> ask_folder(std::string) override {
        co_return std::exchange(folder, std::nullopt);
    }
    std::deque<Answer> answers;
    /// Answers when the queue is empty.
    std::function<std::optional<std::string>(File_purpose)> otherwise;
    std::string shown_title, shown_proposal;  ///< of the last file dialog
    std::optional<std::string> folder;
    bool stays_open = false;

  private:
    Event_loop& loop_;
};

/// A desktop with a fixed date, a command line and a count of beeps. One that is kept awake beyond
/// the program's end fails the test.
class Recorded_desktop : public Desktop_services {
  public:
    ~Recorded_desktop() override { EXPECT_FALSE(awake); }
    void beep() override { ++beeps; }
    void keep_awake(bool on) override { awake = on; }
    void open_file(const std::string& path) override { opened = path; }
    void notify(const std::string& text) override { notified = text; }
    std::string date_text() const override { return "21.11.26"; }
    std::string time_text() const override { return "10:30"; }
    std::string stamp_text(std::time_t) const override { return "09.09.01 03:46"; }
    std::string command_line() const override { return command; }
    Result<> claim_program_directory() override {
        return another_runs ? Result<>(Failure{trouble}) : Result<>();
    }
    std::vector<Library> libraries() const override { return {{"Toolkit", "6.5.4"}}; }
    std::vector<Serial_device> serial_devices() const override { return devices; }
    void copy_text(std::u16string text) override { clipboard = std::move(text); }
    std::u16string copied_text() const override { return clipboard; }

    void tell_standard_error(const std::string& text) override { told += text + "\n"; }

    int beeps = 0;
    bool awake = false;
    std::string opened;
    std::string notified;  ///< last
    std::string told;      ///< on standard error
    std::string command;
    std::u16string clipboard;
    bool another_runs = false;
    std::string trouble;
    std::vector<Serial_device> devices;
};

}  // namespace kelvane::testing
