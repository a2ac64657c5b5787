#include "desktop/qt_message_box.h"

#include <QApplication>
#include <QMessageBox>

#include "desktop/qt_text.h"
#include "desktop/standard_streams.h"

namespace kelvane {

namespace {

struct Choice {
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton careful;
    Message_answer careful_answer;
};

Choice choice_of(Message_buttons buttons) {
    switch (buttons) {
        case Message_buttons::yes_no:
            return {QMessageBox::Yes | QMessageBox::No, QMessageBox::No, Message_answer::no};
        case Message_buttons::ok_cancel:
            return {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel,
                    Message_answer::cancel};
        case Message_buttons::save_discard_cancel:
            return {QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                    QMessageBox::Cancel, Message_answer::cancel};
        case Message_buttons::ok:
            break;
    }
    return {QMessageBox::Ok, QMessageBox::Ok, Message_answer::ok};
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

void fill(QMessageBox& box, const Message& message) {
    const Choice choice = choice_of(message.buttons);
    box.setIcon(icon_of(message.icon));
    box.setWindowTitle(to_screen(message.title));
    box.setTextFormat(Qt::PlainText);
    box.setText(to_screen(message.text));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setStandardButtons(choice.buttons);
    // Enter pressed in passing must not overwrite or delete anything.
    box.setDefaultButton(choice.careful);
    box.setEscapeButton(choice.careful);
}

Message_answer answer(const QMessageBox& box, Message_buttons buttons) {
    const Choice choice = choice_of(buttons);
    const QAbstractButton* pressed = box.clickedButton();
    if (pressed == nullptr || pressed == box.button(choice.careful)) {
        return choice.careful_answer;
    }
    switch (box.standardButton(box.clickedButton())) {
        case QMessageBox::Yes:
            return Message_answer::yes;
        case QMessageBox::Save:
            return Message_answer::save;
        case QMessageBox::Discard:
            return Message_answer::discard;
        default:
            return Message_answer::ok;
    }
}

}  // namespace

Task<Message_answer> Qt_message_box::ask(Message message) {
    const Message_answer careful = choice_of(message.buttons).careful_answer;
    if (!may_ask(message)) {
        co_return careful;
    }
    const Dialog_owner<QMessageBox> box("message_box", windows_.active_window());
    fill(*box, message);
    co_await windows_.run(*box);
    co_return box.there() ? answer(*box, message.buttons) : careful;
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
