// How the computer is kept awake: what is asked of the login service on a bus of the test's own,
// and when that is given back.

#include "desktop/sleep_inhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include "desktop/qt_event_loop.h"
#include "qt_test_application.h"
#include "support/program_process.h"

namespace kelvane::testing {
namespace {

/// Gives out the writing end of a pipe, by whose closing it sees that the inhibition has ended.
class Login_service : public QDBusVirtualObject {
  public:
    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        asked = call;
        if (refuses) {
            return bus.send(call.createErrorReply(QDBusError::AccessDenied, "no"));
        }
        int ends[2];
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        watched = ends[0];
        QDBusUnixFileDescriptor given;
        given.giveFileDescriptor(ends[1]);
        return bus.send(call.createReply(QVariant::fromValue(given)));
    }
    [[nodiscard]] bool held() const {
        pollfd look{watched, 0, 0};
        return watched >= 0 && ::poll(&look, 1, 0) == 0;
    }

    QDBusMessage asked;
    bool refuses = false;
    int watched = -1;
};

TEST(SleepInhibitor, HoldsWhatTheLoginServiceGivesUntilItIsSwitchedOff) {
    const Program_directory folder;
    const std::string address = "unix:path=" + folder.path("bus");
    const Process daemon({"/usr/bin/dbus-daemon", "--session", "--nofork", "--address=" + address},
                         {}, folder.path("log"));
    ASSERT_TRUE(wait_until([&] { return folder.exists("bus"); }, std::chrono::seconds(30)));
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str());
    QDBusConnection bus = QDBusConnection::connectToBus(QString::fromStdString(address), "login");
    Login_service service;
    ASSERT_TRUE(bus.registerService("org.freedesktop.login1"));
    ASSERT_TRUE(bus.registerVirtualObject("/org/freedesktop/login1", &service));

    Qt_event_loop loop;
    Sleep_inhibitor inhibitor;
    inhibitor.set(true);
    wait_for(loop, [&] { return inhibitor.granted(); });
    EXPECT_EQ(service.asked.interface().toStdString() + "." + service.asked.member().toStdString(),
              "org.freedesktop.login1.Manager.Inhibit");
    EXPECT_EQ(service.asked.signature(), "ssss");
    EXPECT_EQ(service.asked.arguments().first().toString(), "sleep:idle");
    EXPECT_EQ(service.asked.arguments().last().toString(), "block");
    wait_for(loop, [&] { return service.held(); });
    inhibitor.set(false);
    wait_for(loop, [&] { return !service.held(); });

    service.asked = {};
    service.watched = -1;
    inhibitor.set(true);
    inhibitor.set(false);
    wait_for(loop, [&] { return service.watched >= 0 && !service.held(); });
    service.refuses = true;
    service.asked = {};
    inhibitor.set(true);
    wait_for(loop, [&] { return service.asked.type() == QDBusMessage::MethodCallMessage; });
    EXPECT_FALSE(inhibitor.granted());
    inhibitor.set(false);
}

}  // namespace
}  // namespace kelvane::testing
