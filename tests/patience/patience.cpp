// Preloaded into the program by a test: its limit for an orderly end after a signal is forty times
// as long. What an orderly end does may then be seen on a computer whose disk keeps the program
// waiting for longer than the limit; one that hangs is still ended by the signal.

#include <ctime>
#include <dlfcn.h>

extern "C" int timer_settime(timer_t timer, int flags, const itimerspec* time,
                             itimerspec* before) noexcept {
    static const auto system =
        reinterpret_cast<int (*)(timer_t, int, const itimerspec*, itimerspec*)>(
            ::dlsym(RTLD_NEXT, "timer_settime"));
    const auto nanoseconds = (time->it_value.tv_sec * 1'000'000'000 + time->it_value.tv_nsec) * 40;
    const itimerspec longer{time->it_interval,
                            {nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000}};
    return system(timer, flags, &longer, before);
}
