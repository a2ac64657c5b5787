#pragma once

#include <functional>

class QObject;

namespace kelvane {

/// From now on SIGTERM, SIGINT and SIGHUP run `close` from the event loop, as long as `owner`
/// exists; there is one owner at a time. A program that has not ended 1.5 s later, because it hangs
/// in a file or a driver, is ended by the signal itself.
void on_end_signals(QObject& owner, std::function<void()> close);

}  // namespace kelvane
