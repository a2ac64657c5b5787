#include "desktop/qt_message_box.h"

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

}  // namespace

Message_answer Qt_message_box::show(const Message& message) {
    const Choice choice = choice_of(message.buttons);
    if (windows_.ended()) {
        return choice.careful_answer;
    }
    // A job that a script has started may have nobody in front of its window.
    tell_standard_error(message.title + ": " + message.text + "\n");
    if (!asks_) {
        return choice.careful_answer;
    }
    QMessageBox box(icon_of(message.icon), to_screen(message.title), to_screen(message.text),
                    choice.buttons, windows_.active_window());
    box.setObjectName("message_box");
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Enter pressed in passing must not overwrite or delete anything.
    box.setDefaultButton(choice.careful);
    box.setEscapeButton(choice.careful);
    const Usual_pointer usual_pointer(windows_);
    open_.push_back(&box);
    box.exec();
    open_.pop_back();
    const QAbstractButton* pressed = box.clickedButton();
    if (pressed == nullptr || pressed == box.button(choice.careful)) {
        return choice.careful_answer;
    }
    return message.buttons == Message_buttons::yes_no ? Message_answer::yes : Message_answer::ok;
}

void Qt_message_box::stop_asking() {
    asks_ = false;
    for (QMessageBox* box : open_) {
        box->reject();
    }
}

}  // namespace kelvane
