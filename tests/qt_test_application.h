#pragma once

#include <QApplication>
#include <gtest/gtest.h>
#include <memory>

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

inline ::testing::Environment* const qt_test_application =
    ::testing::AddGlobalTestEnvironment(new Qt_test_application);

}  // namespace kelvane::testing
