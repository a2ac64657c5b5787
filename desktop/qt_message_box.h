#pragma once

#include "desktop/qt_windows.h"
#include "platform/message_box.h"

namespace kelvane {

/// Message boxes before the window that is active. When the program ends while one is shown, it
/// closes with its careful answer.
class Qt_message_box : public Message_box {
  public:
    explicit Qt_message_box(Qt_windows& windows) : windows_(windows) {}
    Task<Message_answer> ask(Message message) override;
    /// From now on a message goes to standard error only, with its careful answer, which those get
    /// that are open: who ends the program by a signal may not be there to press a button.
    void stop_asking();

  private:
    [[nodiscard]] bool may_ask(const Message& message) const;

    Qt_windows& windows_;
    bool asks_ = true;
};

}  // namespace kelvane
