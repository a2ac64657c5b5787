#pragma once

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <stop_token>
#include <string>
#include <string_view>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace kelvane::bench {

/// The least that can send under Xon/Xoff: a thread before all ordinary work that hands the driver
/// a chunk whenever only `ahead` characters of the last one can be left, and looks for the
/// machine's answer between two chunks. What it sends after an Xoff is what the way of the
/// DC3 through the system costs any sender.
class Bare_sender {
  public:
    static constexpr std::size_t chunk = 5;
    static constexpr std::size_t ahead = 2;

    /// Sends `text` to the device from the machine's first Xon on, `rate` characters a second.
    Bare_sender(const std::string& device, std::string text, int rate)
        : device_(device), text_(std::move(text)), character_(std::chrono::seconds(1)) {
        character_ /= rate;
        thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
    }

  private:
    using Clock = std::chrono::steady_clock;

    void run(const std::stop_token& stop) {
        const int port = ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        termios raw{};
        ::tcgetattr(port, &raw);
        ::cfmakeraw(&raw);
        ::tcsetattr(port, TCSANOW, &raw);
        const sched_param least{::sched_get_priority_min(SCHED_RR)};
        ::sched_setscheduler(0, SCHED_RR, &least);
        Clock::time_point next{};
        for (std::size_t sent = 0; sent < text_.size() && !stop.stop_requested();) {
            if (held(port)) {
                wait_for_input(port);
                next = Clock::now();
                continue;
            }
            const auto part = std::string_view(text_).substr(sent, chunk);
            const auto taken = ::write(port, part.data(), part.size());
            sent += taken > 0 ? static_cast<std::size_t>(taken) : 0;
            // Lost time is never made up: what piled up in the queue then would follow an Xoff.
            next = std::max(next, Clock::now()) + character_ * static_cast<int>(chunk);
            std::this_thread::sleep_until(next - character_ * static_cast<int>(ahead));
        }
        while (!stop.stop_requested()) {
            wait_for_input(port);
            static_cast<void>(held(port));
        }
        ::close(port);
    }
    bool held(int port) {
        for (char answer = 0; ::read(port, &answer, 1) == 1;) {
            held_ = answer == '\x13' || (held_ && answer != '\x11');
        }
        return held_;
    }
    static void wait_for_input(int port) {
        pollfd input{port, POLLIN, 0};
        static_cast<void>(::poll(&input, 1, 100));
    }

    std::string device_;
    std::string text_;
    std::chrono::nanoseconds character_;
    bool held_ = true;
    std::jthread thread_;
};

}  // namespace kelvane::bench
