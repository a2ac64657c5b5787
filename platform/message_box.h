#pragma once

#include <string>
#include <string_view>

#include "platform/task.h"

namespace kelvane {

/// The picture on a box; the critical one stands for what could not be done.
enum class Message_icon { none, information, exclamation, critical };
/// The buttons of a box by what they say, the default one first.
enum class Message_buttons {
    ok,
    ok_cancel,
    yes_no,
    save_discard_cancel,
    save_again,     ///< "Save as ...", "Try again", "Close"
    ok_configure,   ///< "Configure ...", "OK"
    convert_or_raw  ///< "Convert", "As it came", "Cancel"
};
/// The button pressed; "Close" answers as "Cancel" does.
enum class Message_answer {
    ok,
    cancel,
    yes,
    no,
    save,
    discard,
    save_as,
    again,
    configure,
    convert,
    raw
};

/// One modal message: lines of `text` are joined by line feeds.
struct Message {
    std::string text;
    std::string title;
    Message_icon icon = Message_icon::none;
    Message_buttons buttons = Message_buttons::ok;
};

/// Shows modal messages. Closing the box by any other way than its buttons (Escape, the end of the
/// program) answers as the careful button does: cancel, no, or ok where there is nothing else.
class Message_box {
  public:
    virtual ~Message_box() = default;
    /// Waits for the answer while the program goes on.
    virtual Task<Message_answer> ask(Message message) = 0;
};

/// Title of all boxes that have none of their own.
inline constexpr std::string_view product_name = "Kelvane Lite";

}  // namespace kelvane
