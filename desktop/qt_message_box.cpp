#include "desktop/qt_message_box.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <vector>

#include "desktop/qt_text.h"
#include "desktop/standard_streams.h"

namespace kelvane {

namespace {

struct Choice {
    Message_answer answer;
    QMessageBox::StandardButton standard;
    const char* caption = nullptr;  ///< of a button that is none of the system's
};

/// From the boldest to the careful one.
std::vector<Choice> choices_of(Message_buttons buttons) {
    constexpr auto none = QMessageBox::NoButton;
    switch (buttons) {
        case Message_buttons::yes_no:
            return {{Message_answer::yes, QMessageBox::Yes}, {Message_answer::no, QMessageBox::No}};
        case Message_buttons::ok_cancel:
            return {{Message_answer::ok, QMessageBox::Ok},
                    {Message_answer::cancel, QMessageBox::Cancel}};
        case Message_buttons::save_discard_cancel:
            return {{Message_answer::save, QMessageBox::Save},
                    {Message_answer::discard, QMessageBox::Discard},
                    {Message_answer::cancel, QMessageBox::Cancel}};
        case Message_buttons::save_again:
            return {{Message_answer::save_as, none, "&Save as ..."},
                    {Message_answer::again, none, "&Try again"},
                    {Message_answer::cancel, QMessageBox::Close}};
        case Message_buttons::ok_configure:
            return {{Message_answer::configure, none, "&Configure ..."},
                    {Message_answer::ok, QMessageBox::Ok}};
        case Message_buttons::convert_or_raw:
            return {{Message_answer::convert, none, "Con&vert"},
                    {Message_answer::raw, none, "&As it came"},
                    {Message_answer::cancel, QMessageBox::Cancel}};
        case Message_buttons::ok:
            break;
    }
    return {{Message_answer::ok, QMessageBox::Ok}};
}

QMessageBox::Icon icon_of(Message_icon icon) {
    switch (icon) {
        case Message_icon::information:
            return QMessageBox::Information;
        case Message_icon::exclamation:
            return QMessageBox::Warning;
        case Message_icon::critical:
            return QMessageBox::Critical;
        case Message_icon::none:
            break;
    }
    return QMessageBox::NoIcon;
}

constexpr const char* answer_property = "answer";

QPushButton* add_button(QMessageBox& box, const Choice& choice) {
    QPushButton* button = choice.caption == nullptr
                              ? box.addButton(choice.standard)
                              : box.addButton(choice.caption, QMessageBox::AcceptRole);
    button->setProperty(answer_property, static_cast<int>(choice.answer));
    return button;
}

void fill(QMessageBox& box, const Message& message) {
    box.setIcon(icon_of(message.icon));
    box.setWindowTitle(to_screen(message.title));
    box.setTextFormat(Qt::PlainText);
    box.setText(with_long_words_broken(to_screen(message.text)));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    QPushButton* careful = nullptr;
    for (const Choice& choice : choices_of(message.buttons)) {
        careful = add_button(box, choice);
    }
    // Enter pressed in passing must not overwrite or delete anything.
    box.setDefaultButton(careful);
    box.setEscapeButton(careful);
}

Message_answer answer(const QMessageBox& box, Message_answer careful) {
    const QAbstractButton* pressed = box.clickedButton();
    return pressed == nullptr
               ? careful
               : static_cast<Message_answer>(pressed->property(answer_property).toInt());
}

}  // namespace

Task<Message_answer> Qt_message_box::ask(Message message) {
    const Message_answer careful = choices_of(message.buttons).back().answer;
    if (!may_ask(message)) {
        co_return careful;
    }
    const Dialog_owner<QMessageBox> box("message_box", windows_.active_window());
    fill(*box, message);
    co_await windows_.run(*box);
    co_return box.there() ? answer(*box, careful) : careful;
}

void Qt_message_box::stop_asking() {
    asks_ = false;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* box = qobject_cast<QMessageBox*>(window);
        if (box != nullptr && box->isVisible()) {
            box->reject();
        }
    }
}

bool Qt_message_box::may_ask(const Message& message) const {
    if (!windows_.ended()) {
        // A job that a script has started may have nobody in front of its window.
        tell_standard_error(message.title + ": " + message.text + "\n");
    }
    return asks_ && !windows_.ended();
}

}  // namespace kelvane
