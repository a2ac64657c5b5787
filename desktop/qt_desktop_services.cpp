#include "desktop/qt_desktop_services.h"

#include <QApplication>
#include <QClipboard>
#include <QCollator>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDateTime>
#include <QDesktopServices>
#include <QFile>
#include <QLocale>
#include <QSerialPortInfo>
#include <QUrl>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <gnu/libc-version.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "desktop/code39_bars.h"
#include "desktop/qt_text.h"
#include "desktop/serial_line.h"
#include "desktop/serial_names.h"
#include "desktop/standard_streams.h"
#include "platform/files.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr mode_t lock_mode = 0666;

/// The lock file, made when it is missing; -1 when it cannot be opened. One of another user need
/// only be readable, but some network file systems want it writable.
int open_lock(const char* path) {
    for (const int access : {O_RDWR | O_CREAT, O_RDWR, O_RDONLY}) {
        const int lock = ::open(path, access | O_CLOEXEC, lock_mode);
        if (lock >= 0) {
            // Whatever the user's mask says, others are to see it. It holds nothing.
            struct stat found {};
            const bool own_kind = ::fstat(lock, &found) == 0 && S_ISREG(found.st_mode);
            static_cast<void>(own_kind && ::fchmod(lock, lock_mode) == 0);
            return lock;
        }
    }
    return -1;
}

/// A file that nobody may look for in its folder need not be there.
Failure why_denied(const std::string& lock_path) {
    struct stat found {};
    if (::stat(lock_path.c_str(), &found) != 0) {
        return {"The program directory of " + lock_path +
                " is closed to this user.\nName another one with KELVANE_LITE_DIRECTORY."};
    }
    return {"The lock file " + lock_path +
            " belongs to another user and cannot be opened.\nHave Kelvane Lite ended there, then "
            "have that file deleted."};
}

std::string short_date(const QDate& date) {
    return from_screen(QLocale::system().toString(date, QLocale::ShortFormat), Text_form::name);
}

std::string short_time(const QTime& time) {
    return from_screen(QLocale::system().toString(time, QLocale::ShortFormat), Text_form::name);
}

std::string node_of(const QSerialPortInfo& info) {
    return QFile::encodeName(info.systemLocation()).toStdString();
}

/// Adapters leave some factories with the same serial number each.
std::vector<std::string> twins_of(const QSerialPortInfo& info, const QList<QSerialPortInfo>& all) {
    std::vector<std::string> twins;
    for (const QSerialPortInfo& other : all) {
        if (other.serialNumber() == info.serialNumber() && node_of(other) != node_of(info)) {
            twins.push_back(node_of(other));
        }
    }
    return twins;
}

Serial_device device_of(const QSerialPortInfo& info, const QList<QSerialPortInfo>& all) {
    QStringList words = {info.description(), info.manufacturer(), info.serialNumber()};
    words.removeAll(QString());
    words.removeDuplicates();
    const std::string node = node_of(info);
    return {lasting_name(node, !info.serialNumber().isEmpty(), twins_of(info, all)),
            words.join(", ").toStdString(), node, xoff_delay(node), names_that_lead_to(node)};
}

}  // namespace

Qt_desktop_services::Qt_desktop_services(std::string command_line,
                                         const std::string& program_directory)
    : command_line_(std::move(command_line)),
      lock_path_(path_in(program_directory, file_names::bare(file_names::lock))) {}

Qt_desktop_services::~Qt_desktop_services() {
    if (lock_ >= 0) {
        ::close(lock_);
    }
}

void Qt_desktop_services::beep() {
    QApplication::beep();
}

// The answer, if any comes, is nobody's business. Without an address Qt would start a bus.
void Qt_desktop_services::notify(const std::string& text) {
    if (QApplication::applicationState() == Qt::ApplicationActive ||
        qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) {
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.Notifications",
                                                       "/org/freedesktop/Notifications",
                                                       "org.freedesktop.Notifications", "Notify");
    constexpr int as_long_as_usual = -1;
    call << QString("Kelvane Lite") << 0U << QString("kelvane-lite") << QString("Kelvane Lite")
         << to_screen(text).toHtmlEscaped() << QStringList() << QVariantMap() << as_long_as_usual;
    QDBusConnection::sessionBus().send(call);
}

void Qt_desktop_services::open_file(const std::string& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFile::decodeName(path.c_str())));
}

std::string Qt_desktop_services::date_text() const {
    return short_date(QDate::currentDate());
}

std::string Qt_desktop_services::time_text() const {
    return short_time(QTime::currentTime());
}

std::string Qt_desktop_services::stamp_text(std::time_t stamp) const {
    const QDateTime time = QDateTime::fromSecsSinceEpoch(stamp);
    return short_date(time.date()) + " " + short_time(time.time());
}

Result<> Qt_desktop_services::claim_program_directory() {
    if (lock_ >= 0) {
        return {};
    }
    lock_ = open_lock(lock_path_.c_str());
    if (lock_ < 0 && errno == EACCES) {
        return why_denied(lock_path_);
    }
    // A folder that takes no lock file at all (read-only, full) does not keep anybody out.
    if (lock_ >= 0 && ::flock(lock_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        ::close(std::exchange(lock_, -1));
        return Failure{};
    }
    return {};
}

void Qt_desktop_services::copy_text(std::u16string text) {
    QGuiApplication::clipboard()->setText(QString::fromStdU16String(text));
}

std::u16string Qt_desktop_services::copied_text() const {
    QString text = QGuiApplication::clipboard()->text();
    return text.replace("\r\n", "\n").replace('\r', '\n').toStdU16String();
}

std::vector<Serial_device> Qt_desktop_services::serial_devices() const {
    std::vector<Serial_device> devices;
    const QList<QSerialPortInfo> all = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& info : all) {
        devices.push_back(device_of(info, all));
    }
    QCollator by_number;
    by_number.setNumericMode(true);
    std::sort(devices.begin(), devices.end(), [&](const auto& a, const auto& b) {
        return by_number.compare(to_screen(a.path), to_screen(b.path)) < 0;
    });
    return devices;
}

std::vector<Library> Qt_desktop_services::libraries() const {
    return {{"Qt", qVersion()},
            {"Zint", barcode_library_version()},
            {"C library", gnu_get_libc_version()}};
}

void Qt_desktop_services::tell_standard_error(const std::string& text) {
    kelvane::tell_standard_error(text + "\n");
}

}  // namespace kelvane
