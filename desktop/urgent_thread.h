#pragma once

namespace kelvane {

/// As long as one lives, its thread goes before all ordinary work of the computer, where the system
/// grants that to the user (`RLIMIT_RTPRIO`): at 115200 baud a sender has 0.2 ms from its wake-up
/// to an empty line, and a busy computer keeps an ordinary thread waiting for several. Processes
/// started meanwhile stay ordinary.
class Urgent_thread {
  public:
    Urgent_thread();
    Urgent_thread(const Urgent_thread&) = delete;
    Urgent_thread& operator=(const Urgent_thread&) = delete;
    ~Urgent_thread();

  private:
    bool granted_ = false;
};

}  // namespace kelvane
