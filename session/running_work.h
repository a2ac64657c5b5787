#pragma once

#include <functional>

#include "platform/event_loop.h"

namespace kelvane {

/// Keeps count of the routines that are at work on the call stack (a send, the end of a receive, a
/// listing). A menu command picked inside one of their yields cannot wait for them, because they
/// stand below it on the stack and cannot go on before it returns: it is put off until they have.
class Running_work {
  public:
    explicit Running_work(Event_loop& loop);

    /// Lives as long as the work it stands for.
    class Scope {
      public:
        explicit Scope(Running_work& work) : work_(work) { ++work_.depth_; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { work_.leave(); }

      private:
        Running_work& work_;
    };

    [[nodiscard]] bool any() const { return depth_ > 0; }
    /// Runs `command` now, or, while anything is at work, as soon as nothing is. A later command
    /// takes the place of one that still waits.
    void run_when_done(std::function<void()> command);
    /// Forgets a command that waits.
    void forget();

  private:
    void leave();
    void run_waiting();

    Timer retry_;
    int depth_ = 0;
    std::function<void()> waiting_;
};

}  // namespace kelvane
