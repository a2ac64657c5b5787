#pragma once

#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <memory>

namespace kelvane {

/// Keeps the computer from falling asleep of itself, by the login service, which every desktop
/// heeds. Where there is none, or where it refuses, nothing happens and nothing is said. Its answer
/// is not waited for: a transfer begins at once. Only the bus itself is, by Qt, the first time.
class Sleep_inhibitor {
  public:
    /// On until it is switched off; doing so twice changes nothing.
    void set(bool on);
    /// True while the service has granted it.
    [[nodiscard]] bool granted() const { return held_.isValid(); }

  private:
    void take(const QDBusPendingCall& answer);

    std::unique_ptr<QDBusPendingCallWatcher> asked_;  ///< while it is on
    QDBusUnixFileDescriptor held_;                    ///< closing it ends the inhibition
};

}  // namespace kelvane
