#pragma once

#include <QApplication>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <utility>

#include "platform/event_loop.h"
#include "platform/task_keeper.h"

namespace kelvane::testing {

/// The application object that windows, timers and ports need; no display is asked for.
class Qt_test_application : public ::testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_ = std::make_unique<QApplication>(count_, arguments_);
        QApplication::setQuitOnLastWindowClosed(false);
    }
    void TearDown() override { application_.reset(); }

  private:
    int count_ = 1;
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};

/// Runs the application's loop until `condition` holds, which is looked at as a task looks at what
/// it waits for, and once a second, for conditions of time.
inline void wait_for(Event_loop& loop, std::function<bool()> condition) {
    Task_keeper keeper(loop);
    Timer look(loop, 1000);
    look.set_enabled(true);
    keeper.start([](Event_loop& its_loop, std::function<bool()> holds) -> Task<> {
        while (!holds()) {
            co_await its_loop.next();
        }
        QCoreApplication::exit();
    }(loop, std::move(condition)));
    if (!keeper.empty()) {
        QCoreApplication::exec();
    }
}

inline ::testing::Environment* const qt_test_application =
    ::testing::AddGlobalTestEnvironment(new Qt_test_application);

}  // namespace kelvane::testing
