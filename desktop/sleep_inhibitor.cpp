#include "desktop/sleep_inhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>

namespace kelvane {

namespace {

QDBusMessage inhibit_call() {
    QDBusMessage call =
        QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                       "org.freedesktop.login1.Manager", "Inhibit");
    call << "sleep:idle"
         << "Kelvane Lite"
         << "A program is being transferred to or from a machine"
         << "block";
    return call;
}

}  // namespace

void Sleep_inhibitor::set(bool on) {
    if (on == (asked_ != nullptr)) {
        return;
    }
    if (!on) {
        // An answer that is still on its way is let go with its descriptor.
        asked_.reset();
        held_ = {};
        return;
    }
    asked_ = std::make_unique<QDBusPendingCallWatcher>(
        QDBusConnection::systemBus().asyncCall(inhibit_call()));
    QObject::connect(asked_.get(), &QDBusPendingCallWatcher::finished, asked_.get(),
                     [this] { take(*asked_); });
}

void Sleep_inhibitor::take(const QDBusPendingCall& answer) {
    const QDBusPendingReply<QDBusUnixFileDescriptor> reply = answer;
    if (!reply.isError()) {
        held_ = reply.value();
    }
}

}  // namespace kelvane
