#include "receive/save_received.h"

#include <utility>

#include "platform/basic_text.h"
#include "platform/lines.h"
#include "receive/conversion.h"
#include "receive/reception_doubts.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr const char* title = "Save received data as";

Message question_about(const Unsaved_reception& reception, std::size_t length) {
    return {grouped_decimal(length) + " bytes received from " + reception.machine + " for\n" +
                reception.path +
                "\nhave not been saved. Convert them to text as that machine is set up, or save "
                "them as they came?",
            title, Message_icon::information, Message_buttons::convert_or_raw};
}

Message unread_box(const std::string& path, const std::string& reason) {
    return critical_box("Cannot access file\n" + path + "\n" + reason);
}

}  // namespace

Task<> Save_received::run() {
    if (!session_.control.may_start_work()) {
        session_.op.beep();
        co_return;
    }
    const auto reception = unsaved_reception(session_.files);
    if (!reception) {
        const Message nothing{"There is no received data that has not been saved.", title,
                              Message_icon::information, Message_buttons::ok};
        const Message unread =
            unread_box(session_.files.program_path(file_names::reception_note), reception.reason());
        co_await session_.op.ask(reception.missing() ? nothing : unread);
        co_return;
    }
    auto content = co_await this->content(*reception);
    if (content) {
        co_await save(*std::move(content), reception->path);
    }
}

Task<std::optional<Save_received::Content>> Save_received::content(Unsaved_reception reception) {
    auto raw = session_.files.read(reception.file);
    if (!raw) {
        const Message unread = unread_box(reception.file, raw.reason());
        co_await session_.op.ask(unread);
        co_return std::nullopt;
    }
    if (reception.form != Unsaved_reception::Form::raw) {
        co_return Content{*std::move(raw), {}};
    }
    const Message question = question_about(reception, raw->size());
    const Message_answer answer = co_await session_.op.ask(question);
    if (answer == Message_answer::raw) {
        co_return Content{*std::move(raw), {}};
    }
    if (answer != Message_answer::convert) {
        co_return std::nullopt;
    }
    co_return co_await converted(std::move(reception), *std::move(raw));
}

Task<std::optional<Save_received::Content>> Save_received::converted(Unsaved_reception reception,
                                                                     std::string raw) {
    const Loaded_options loaded = load_transfer_options(session_.files, reception.machine);
    const auto code = code_of(raw, loaded.options);
    const Conversion_options dropped = conversion_options(loaded.options);
    std::string text;
    if (code) {
        text = co_await converted_text(session_.loop, tables_, raw, *code, dropped);
    }
    if (text.empty()) {
        const Message unknown = unrecognised_box();
        co_await session_.op.ask(unknown);
        co_return std::nullopt;
    }
    Reception_doubts doubts = doubts_of(raw, tables_, *code, dropped);
    const std::string_view kept = skipped_up_to(text, loaded.options.Skip_upto);
    drop_lines(doubts, count_lines(text) - count_lines(kept));
    co_return Content{std::string(kept), doubts_text(doubts)};
}

Task<> Save_received::save(Content content, std::string proposed) {
    auto path = co_await session_.op.ask_save_path(title, std::move(proposed));
    while (path) {
        const auto written = session_.files.replace(*path, content.text);
        if (written) {
            const std::string said = "Saved " + *path;
            session_.op.set_note(said + (content.doubts.empty() ? "" : "  |  " + content.doubts));
            if (!content.doubts.empty()) {
                const Message doubts = warning_box(content.doubts, "Received data error");
                co_await session_.op.ask(doubts);
            }
            co_return;
        }
        const Message failure = critical_box(
            "Cannot access file\n" + *path + "\n" + written.reason(), "Disk write error");
        path = co_await ask_next_path(session_.op, failure, *path);
    }
}

Task<std::optional<std::string>> ask_next_path(Operator& op, Message failure, std::string path) {
    failure.buttons = Message_buttons::save_again;
    while (true) {
        const Message_answer answer = co_await op.ask(failure);
        if (answer == Message_answer::again) {
            co_return path;
        }
        if (answer != Message_answer::save_as) {
            co_return std::nullopt;
        }
        auto other = co_await op.ask_save_path(title, path);
        if (other) {
            co_return other;
        }
    }
}

}  // namespace kelvane
