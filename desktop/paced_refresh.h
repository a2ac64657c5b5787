#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>

namespace kelvane {

/// Shows changes that come faster than anybody can see: at most 25 times a second, and less often
/// when showing them costs more than a two-hundredth of the time. While a program is sent, the line
/// waits for every paint.
class Paced_refresh {
  public:
    explicit Paced_refresh(std::function<void()> refresh);

    /// Something has changed: refreshes now when the last time is long enough ago, else once later.
    void request();
    /// Refreshes now.
    void run();
    /// Painting that the last refresh has caused took so long.
    void add_cost(qint64 nanoseconds) { cost_ += nanoseconds; }
    /// True while a change waits to be shown.
    [[nodiscard]] bool pending() const { return later_.isActive(); }

  private:
    [[nodiscard]] qint64 interval() const;

    std::function<void()> refresh_;
    QTimer later_;
    QElapsedTimer since_last_;
    qint64 cost_ = 0;  ///< of the last refresh and what followed from it, nanoseconds
};

}  // namespace kelvane
