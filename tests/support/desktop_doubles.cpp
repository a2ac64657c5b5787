#include "support/desktop_doubles.h"

#include <gtest/gtest.h>

namespace kelvane::testing {

Scripted_message_box::~Scripted_message_box() {
    for (const Expectation& left : expected_) {
        ADD_FAILURE() << "no box has said \"" << left.part << "\"";
    }
}

void Scripted_message_box::expect(std::string part, Message_answer answer,
                                  std::function<void()> meanwhile) {
    expected_.push_back({std::move(part), answer, std::move(meanwhile)});
}

Message_answer Scripted_message_box::show(const Message& message) {
    shown_.push_back(message);
    if (expected_.empty()) {
        ADD_FAILURE() << "unexpected box \"" << message.title << "\": " << message.text;
        return message.buttons == Message_buttons::yes_no ? Message_answer::no : Message_answer::ok;
    }
    const Expectation expectation = std::move(expected_.front());
    expected_.pop_front();
    const std::string all = message.title + "\n" + message.text;
    EXPECT_NE(all.find(expectation.part), std::string::npos)
        << "expected \"" << expectation.part << "\", box says: " << all;
    if (expectation.meanwhile) {
        expectation.meanwhile();
    }
    return expectation.answer;
}

void Recorded_windows::show(Form& form, bool modal) {
    log.push_back((modal ? "modal " : "show ") + form.name());
    const auto action = actions_.find(form.name());
    if (action != actions_.end()) {
        loop_.after(Clock_time(0), action->second);
        actions_.erase(action);
    }
}

void Recorded_windows::hide(Form& form) {
    log.push_back("hide " + form.name());
}

void Recorded_windows::wait_while_visible(const Form& form) {
    loop_.run_until([&form] { return !form.visible(); });
}

void Recorded_windows::when_shown(const std::string& form_name, std::function<void()> action) {
    actions_[form_name] = std::move(action);
}

std::optional<std::string> Scripted_file_dialog::choose_file(File_purpose purpose) {
    asked.push_back(purpose);
    if (meanwhile) {
        std::exchange(meanwhile, nullptr)();
    }
    if (answers.empty()) {
        return std::nullopt;
    }
    std::string answer = std::move(answers.front());
    answers.pop_front();
    return answer;
}

std::optional<std::string> Scripted_file_dialog::choose_folder(const std::string&) {
    return choose_file(File_purpose::open);
}

}  // namespace kelvane::testing
