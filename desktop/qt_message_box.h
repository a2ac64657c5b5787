#pragma once

#include "desktop/qt_windows.h"
#include "platform/message_box.h"

namespace kelvane {

/// Message boxes before the window that is active. When the program ends while one is shown, it
/// closes with its careful answer.
class Qt_message_box : public Message_box {
  public:
    explicit Qt_message_box(Qt_windows& windows) : windows_(windows) {}
    Message_answer show(const Message& message) override;

  private:
    Qt_windows& windows_;
};

}  // namespace kelvane
