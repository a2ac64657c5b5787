#pragma once

#include <QEvent>
#include <QObject>
#include <functional>
#include <utility>

namespace kelvane {

/// An event filter made of a function, owned by the object it watches or another. The function
/// answers true for an event that goes no further.
class Event_filter : public QObject {
  public:
    using Handler = std::function<bool(QEvent&)>;

    /// Watches `watched` until that object ends.
    static void install(QObject& watched, Handler handler) {
        install(watched, watched, std::move(handler));
    }
    /// Watches `watched` until it or `owner` ends.
    static void install(QObject& watched, QObject& owner, Handler handler) {
        watched.installEventFilter(new Event_filter(owner, std::move(handler)));
    }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override { return handler_(*event); }

  private:
    Event_filter(QObject& owner, Handler handler) : QObject(&owner), handler_(std::move(handler)) {}

    Handler handler_;
};

}  // namespace kelvane
