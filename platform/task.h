#pragma once

#include <coroutine>
#include <cstdint>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace kelvane {

class Wait_list;

/// The place of a task in a `Wait_list`; it leaves the list when the task is destroyed.
class Waiter {
  public:
    Waiter() = default;
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;
    ~Waiter();

  private:
    friend Wait_list;
    Wait_list* list_ = nullptr;
    std::coroutine_handle<> task_;
    std::uint64_t round_ = 0;
    bool again_ = false;  ///< not its first wait
};

/// Suspended tasks, in the order in which they began to wait.
class Wait_list {
  public:
    Wait_list() = default;
    Wait_list(const Wait_list&) = delete;
    Wait_list& operator=(const Wait_list&) = delete;
    ~Wait_list();

    void add(Waiter& waiter, std::coroutine_handle<> task);
    [[nodiscard]] bool empty() const { return waiters_.empty(); }
    /// Begins a round: all that wait now are in it, and who waits again is not.
    std::uint64_t begin_round() { return ++round_; }
    /// Takes the first task of this round or an older one out of the list; null when none is left.
    /// Rounds may be nested.
    [[nodiscard]] std::coroutine_handle<> take(std::uint64_t round);
    /// True when `task`, just resumed, has only gone back to waiting.
    [[nodiscard]] bool waits_again(std::coroutine_handle<> task) const;

  private:
    friend Waiter;
    std::vector<Waiter*> waiters_;
    std::uint64_t round_ = 1;
};

template <typename T>
class Task;

/// What the promises of all tasks have in common.
class Task_promise {
  public:
    [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }
    void unhandled_exception() noexcept { fault_ = std::current_exception(); }
    [[nodiscard]] auto final_suspend() const noexcept {
        struct Back_to_awaiter {
            std::coroutine_handle<> awaiter;
            [[nodiscard]] bool await_ready() const noexcept { return false; }
            [[nodiscard]] std::coroutine_handle<> await_suspend(
                std::coroutine_handle<>) const noexcept {
                return awaiter;
            }
            void await_resume() const noexcept {}
        };
        return Back_to_awaiter{awaiter_};
    }

    void set_awaiter(std::coroutine_handle<> awaiter) { awaiter_ = awaiter; }
    void rethrow() const {
        if (fault_) {
            std::rethrow_exception(fault_);
        }
    }
    [[nodiscard]] Waiter& waiter() { return waiter_; }

  private:
    std::coroutine_handle<> awaiter_ = std::noop_coroutine();
    std::exception_ptr fault_;
    Waiter waiter_;
};

template <typename T>
class Value_promise : public Task_promise {
  public:
    [[nodiscard]] Task<T> get_return_object();
    void return_value(T value) { value_.emplace(std::move(value)); }
    [[nodiscard]] T take() {
        rethrow();
        return std::move(*value_);
    }

  private:
    std::optional<T> value_;
};

class Void_promise : public Task_promise {
  public:
    [[nodiscard]] Task<void> get_return_object();
    void return_void() const {}
    void take() const { rethrow(); }
};

/// Long work as a coroutine, on one thread. It begins when it is awaited or started, and belongs to
/// whoever holds it: destroying it ends the work at its last suspension, runs the destructors of
/// what it holds, and takes it off whatever it waits for. An exception that leaves it comes out
/// where it is awaited.
///
/// A task must not be destroyed while it runs; a `Task_keeper` sees to that for those that nobody
/// awaits. Its parameters are copied into it: references must be to what outlives it.
template <typename T = void>
class [[nodiscard]] Task {
  public:
    using promise_type =
        std::conditional_t<std::is_void_v<T>, Void_promise,
                           Value_promise<std::conditional_t<std::is_void_v<T>, int, T>>>;

    Task(Task&& other) noexcept : task_(std::exchange(other.task_, nullptr)) {}
    Task& operator=(Task&& other) noexcept {
        std::swap(task_, other.task_);
        return *this;
    }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() {
        if (task_) {
            task_.destroy();
        }
    }

    /// True when it has returned or ended by an exception.
    [[nodiscard]] bool done() const { return task_.done(); }
    /// To be resumed once, for a task that nobody awaits: its first stretch, as far as the first
    /// wait.
    [[nodiscard]] std::coroutine_handle<> handle() const { return task_; }
    /// What a done task has returned, once; throws what has left it.
    T result() { return task_.promise().take(); }

    auto operator co_await() const noexcept {
        struct Awaiter {
            std::coroutine_handle<promise_type> task;
            [[nodiscard]] bool await_ready() const noexcept { return false; }
            // Not by handing over to the task: builds without tail calls would then need a stretch
            // of stack for each task in a loop that never waits.
            [[nodiscard]] bool await_suspend(std::coroutine_handle<> awaiter) const {
                task.resume();
                if (task.done()) {
                    return false;
                }
                task.promise().set_awaiter(awaiter);
                return true;
            }
            T await_resume() const { return task.promise().take(); }
        };
        return Awaiter{task_};
    }

  private:
    friend promise_type;
    explicit Task(promise_type& promise)
        : task_(std::coroutine_handle<promise_type>::from_promise(promise)) {}

    std::coroutine_handle<promise_type> task_;
};

template <typename T>
Task<T> Value_promise<T>::get_return_object() {
    return Task<T>(*this);
}
inline Task<void> Void_promise::get_return_object() {
    return Task<void>(*this);
}

/// What a task returns that never waits.
template <typename T>
T at_once(Task<T> task) {
    task.handle().resume();
    return task.result();
}

}  // namespace kelvane
