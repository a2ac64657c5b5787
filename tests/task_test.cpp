#include "platform/task.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/file_pieces.h"
#include "platform/task_keeper.h"
#include "support/memory_files.h"
#include "support/virtual_loop.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;

/// Writes its letter down when it ends, however that comes.
class Mark {
  public:
    Mark(std::string& log, char letter) : log_(log), letter_(letter) {}
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;
    ~Mark() { log_ += letter_; }

  private:
    std::string& log_;
    char letter_;
};

/// Longer than what a string keeps within itself, so that the sanitizer sees a copy that is lost.
std::string text(int number) {
    return "a text that stands on the heap, number " + std::to_string(number);
}

class Task_test : public ::testing::Test {
  protected:
    Virtual_loop loop;
    std::string log;
    bool pressed = false;

    Task<> wait_for_press() {
        while (!pressed) {
            co_await loop.next();
        }
    }
    Task<std::string> text_after_press(std::string before) {
        const Mark mark(log, 'i');
        co_await wait_for_press();
        co_return before + "!";
    }
    Task<std::string> two_texts() {
        const Mark mark(log, 'o');
        const std::string first = co_await text_after_press(text(1));
        const std::string second = co_await text_after_press(text(2));
        co_return first + second;
    }
    /// Waits for good.
    Task<> hold(char letter) {
        const Mark mark(log, letter);
        for (;;) {
            co_await loop.next();
        }
    }
    Task<> outer_hold(char outer, char inner) {
        const Mark mark(log, outer);
        co_await hold(inner);
    }
    Task<> end_by_press(Task_keeper& all) {
        const Mark mark(log, 'e');
        co_await wait_for_press();
        all.end_all();
        log += '(';
        EXPECT_TRUE(all.empty());
        all.start(hold('l'));
        co_await loop.next();
        log += "never";
    }
    Task<> follow(std::string before, char letter) {
        while (log != before) {
            co_await loop.next();
        }
        log += letter;
    }
    Task<int> breaths_until_press() {
        int breaths = 0;
        for (; !pressed; ++breaths) {
            co_await loop.breath();
        }
        co_return breaths;
    }
    static Task<int> at_once(int value) { co_return value; }
    Task<> fail() {
        co_await loop.next();
        throw std::runtime_error(text(3));
    }
    Task<> fail_within(char letter) {
        const Mark mark(log, letter);
        co_await fail();
    }
};

TEST_F(Task_test, nested_tasks_keep_what_they_hold_and_return_it) {
    loop.at(1s, [this] { pressed = true; });
    EXPECT_EQ(loop.run(two_texts()), text(1) + "!" + text(2) + "!");
    EXPECT_EQ(loop.now(), 1s);
    EXPECT_EQ(log, "iio");
}

TEST_F(Task_test, a_loop_of_awaits_that_never_wait_needs_no_stack) {
    const auto sum = [](int count) -> Task<int> {
        int total = 0;
        for (int i = 0; i < count; ++i) {
            total += co_await at_once(1);
        }
        co_return total;
    };
    EXPECT_EQ(loop.run(sum(300'000)), 300'000);
}

TEST_F(Task_test, a_task_that_is_destroyed_ends_from_within_and_waits_no_more) {
    {
        const Task<> never_started = hold('x');
        Task_keeper keeper(loop);
        keeper.start(outer_hold('o', 'i'));
        keeper.start(hold('n'));
        loop.run_for(1ms);
        EXPECT_EQ(log, "");
    }
    EXPECT_EQ(log, "ion");
    EXPECT_THROW(loop.step(), Waits_for_ever);
}

TEST_F(Task_test, a_task_may_end_its_keeper_and_no_task_goes_on_afterwards) {
    Task_keeper keeper(loop);
    keeper.start(end_by_press(keeper));
    keeper.start(follow("(", 'n'));
    pressed = true;
    loop.wake();
    loop.step();
    EXPECT_EQ(log, "(e");
    EXPECT_FALSE(keeper.empty());
}

TEST_F(Task_test, tasks_go_on_in_order_and_see_what_others_have_done_without_another_event) {
    Task_keeper keeper(loop);
    keeper.start(follow("abc", 'd'));
    keeper.start(follow("ab", 'c'));
    keeper.start(follow("a", 'b'));
    loop.at(5ms, [this] { log = "a"; });
    loop.run_until([&keeper] { return keeper.empty(); });
    EXPECT_EQ(log, "abcd");
    EXPECT_EQ(loop.now(), 5ms);
}

TEST_F(Task_test, a_working_task_lets_events_in_and_time_stands_still) {
    for (const char letter : {'1', '2', '3'}) {
        loop.at(0s, [this, letter] { log += letter; });
    }
    loop.at(0s, [this] { pressed = true; });
    EXPECT_GE(loop.run(breaths_until_press()), 3);
    EXPECT_EQ(log, "123");
    EXPECT_EQ(loop.now(), 0s);
}

TEST_F(Task_test, an_exception_comes_out_where_the_task_is_awaited_or_out_of_the_loop) {
    const auto caught = [](Task<> task) -> Task<std::string> {
        try {
            co_await task;
        } catch (const std::runtime_error& fault) {
            co_return fault.what();
        }
        co_return "";
    };
    EXPECT_EQ(loop.run(caught(fail_within('w'))), text(3));
    EXPECT_EQ(log, "w");

    Task_keeper keeper(loop);
    keeper.start(fail());
    keeper.start(wait_for_press());
    EXPECT_THROW(loop.step(), std::runtime_error);
    EXPECT_FALSE(keeper.empty());
    pressed = true;
    loop.step();  // the others of the round go on
    EXPECT_TRUE(keeper.empty());
}

Task<> read(Event_loop& loop, const Files& files, std::shared_ptr<const std::string>& content) {
    const auto result = co_await read_in_pieces(loop, files, "/nc/LONG.NC", content);
    content = result ? *result : nullptr;
}

TEST_F(Task_test, a_long_file_is_in_memory_once_but_what_it_holds_decides) {
    Memory_files files;
    const std::string shown = std::string(5'000'000, 'N') + "M30";
    const struct {
        const char* name;
        std::string file;
        bool shared;
    } cases[] = {{"as it is shown", shown, true},
                 {"longer", shown + "\r\n", false},
                 {"cut", shown.substr(0, 4'500'000), false},
                 {"emptied", "", false},
                 {"its last character another", shown.substr(0, shown.size() - 1) + "1", false}};
    for (const auto& c : cases) {
        files.put("/nc/LONG.NC", c.file);
        const auto known = std::make_shared<const std::string>(shown);
        auto content = known;
        loop.run(read(loop, files, content));
        EXPECT_TRUE(*content == c.file) << c.name;
        EXPECT_EQ(content == known, c.shared) << c.name;
    }
    files.remove("/nc/LONG.NC");
    auto content = std::make_shared<const std::string>(shown);
    loop.run(read(loop, files, content));
    EXPECT_EQ(content, nullptr);
}

}  // namespace
}  // namespace kelvane::testing
