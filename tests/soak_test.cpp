// A week in the shop, in virtual time: jobs one after another, every third of them disturbed. What
// the program holds in memory and what it has running must be the same in the evening as in the
// morning.

#include <cstdlib>
#include <gtest/gtest.h>
#include <malloc.h>
#include <new>
#include <random>

#include "support/shop_jobs.h"

namespace {
/// Bytes that are in use. The allocator's own figure counts what it keeps for the next time, too.
std::size_t in_use = 0;
}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* const memory = std::malloc(size);
    in_use += ::malloc_usable_size(memory);
    return memory;
}
void* operator new(std::size_t size) {
    void* const memory = ::operator new(size, std::nothrow);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
void operator delete(void* memory) noexcept {
    in_use -= ::malloc_usable_size(memory);
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    ::operator delete(memory);
}

namespace kelvane::testing {
namespace {

constexpr Clock_time week = std::chrono::hours(7 * 24);
constexpr Clock_time between_jobs = std::chrono::minutes(4);

/// What the operator or the line does in the midst of a job.
void disturb(Shop_floor& shop, std::size_t how) {
    switch (how % 6) {
        case 0:
            shop.window().Stop_button.click();
            break;
        case 1:
            shop.machine().hang_up();
            break;
        case 2:
            shop.machine().sends(xoff);
            shop.machine().after(20s, [&shop] { shop.machine().sends(xon); });
            break;
        case 3:
            shop.window().AboutMenuItem[how % 5].click();
            shop.all().information_form.unload();
            break;
        case 4:
            shop.window().ToolsMenuItem[0].click();
            shop.machine().after(5s, [&shop] { shop.all().line_monitor_form.unload(); });
            break;
        default:
            shop.pick(1, "OTHER.NC");
    }
}

/// Bytes in use, without the records of the doubles, after a day on which every job was done.
std::size_t after_a_day(Shop_floor& shop, std::mt19937& random, Clock_time evening, int& jobs) {
    while (shop.desk.loop.now() < evening) {
        const Shop_job& job = shop_jobs()[random() % shop_jobs().size()];
        if (*job.command_line == '\0') {
            shop.state().IO_device_name = job.machine;
            if (random() % 3 == 0) {
                shop.machine().after(std::chrono::milliseconds(random() % 3000),
                                     [&shop, how = random()] { disturb(shop, how); });
            }
            job.run(shop);
            shop.all().configure_form.unload();
            shop.pass(between_jobs);
            until_done(shop);
            ++jobs;
            EXPECT_TRUE(shop.idle() && shop.window().tasks.empty()) << job.what;
        }
    }
    // The same work each evening, so that what is kept of the last jobs is the same.
    for (const Shop_job& job : shop_jobs()) {
        furnish(shop);
        if (*job.command_line == '\0') {
            shop.state().IO_device_name = job.machine;
            job.run(shop);
            until_done(shop);
            shop.all().configure_form.unload();
        }
    }
    shop.state().IO_device_name = "Mill";
    file_job(shop, 1, job_wire);
    EXPECT_EQ(shop.file("PART.NC"), job_wire);
    EXPECT_TRUE(open_in_editor(shop));
    shop.machine().forget();
    shop.boxes().forget();
    shop.desk.printer.pages.clear();
    shop.desk.printer.sizes.clear();
    return in_use;
}

TEST(Soak, AWeekLeavesNothingBehind) {
    std::mt19937 random(15);
    Shop_floor shop;
    shop.desk.loop.longest = 2 * week;
    furnish(shop);
    shop.start();
    until_done(shop);
    int jobs = 0;
    std::vector<std::size_t> evenings;
    for (int day = 1; day <= 7; ++day) {
        evenings.push_back(after_a_day(shop, random, week / 7 * day, jobs));
        RecordProperty("bytes in use on day " + std::to_string(day), int(evenings.back()));
    }
    RecordProperty("jobs", jobs);
    // Buffers keep their largest size; four bytes a job would be more.
    EXPECT_LT(std::ranges::max(evenings), evenings.front() + 8'000);
    EXPECT_FALSE(shop.desk.loop.timers().next_due()) << "a timer runs on";
    shop.window().unload();
    EXPECT_TRUE(shop.desk.windows.ended);
}

}  // namespace
}  // namespace kelvane::testing
