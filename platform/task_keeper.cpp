#include "platform/task_keeper.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvane {

Task_keeper::Task_keeper(Event_loop& loop) : loop_(loop) {
    loop_.keepers_.push_back(this);
}

Task_keeper::~Task_keeper() {
    end_all();
    std::erase(loop_.keepers_, this);
}

void Task_keeper::start(Task<> task) {
    const std::coroutine_handle<> handle = task.handle();
    tasks_.push_back(std::move(task));
    loop_.wake();
    loop_.resume(handle);
}

void Task_keeper::end_all() {
    std::move(tasks_.begin(), tasks_.end(), std::back_inserter(loop_.ending_));
    tasks_.clear();
    loop_.end_tasks();
}

void Task_keeper::drop_done() {
    const auto first_done = std::stable_partition(tasks_.begin(), tasks_.end(),
                                                  [](const Task<>& task) { return !task.done(); });
    std::vector<Task<>> done(std::make_move_iterator(first_done),
                             std::make_move_iterator(tasks_.end()));
    tasks_.erase(first_done, tasks_.end());
    for (Task<>& task : done) {
        task.result();
    }
}

}  // namespace kelvane
