#pragma once

#include <vector>

#include "platform/event_loop.h"
#include "platform/task.h"

namespace kelvane {

/// Keeps the tasks that nobody awaits, those that a press or a timer has started. A task that is
/// done leaves by itself; what has left it as an exception comes out of the event in which that
/// happened, for the last trap. Ending the keeper ends its tasks.
class Task_keeper {
  public:
    explicit Task_keeper(Event_loop& loop);
    Task_keeper(const Task_keeper&) = delete;
    Task_keeper& operator=(const Task_keeper&) = delete;
    ~Task_keeper();

    /// Runs the task as far as its first wait and keeps it.
    void start(Task<> task);
    /// Ends all tasks at their last waits: now, or, when called by a task, once that one waits or
    /// is done. None goes on in between.
    void end_all();
    [[nodiscard]] bool empty() const { return tasks_.empty(); }

  private:
    friend Event_loop;
    void drop_done();

    Event_loop& loop_;
    std::vector<Task<>> tasks_;
};

}  // namespace kelvane
