#pragma once

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::bench {

using Seconds = double;

/// The time in the middle of `rounds` runs of `work`, each after `prepare`, which is not counted.
inline Seconds usual_time(int rounds, const std::function<void()>& prepare,
                          const std::function<void()>& work) {
    std::vector<Seconds> times;
    for (int round = 0; round < rounds; ++round) {
        prepare();
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<Seconds> taken = std::chrono::steady_clock::now() - start;
        times.push_back(taken.count());
    }
    const auto middle = times.begin() + rounds / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

inline Seconds usual_time(int rounds, const std::function<void()>& work) {
    return usual_time(
        rounds, [] {}, work);
}

/// Runs a command line of the shell; false when it fails.
inline bool command(const std::string& line) {
    return std::system(line.c_str()) == 0;
}

/// Which of two figures is the better one.
enum class Better { smaller, greater };

/// Prints a figure beside that of another program in the same run: a row of a table, of which the
/// last field tells how many times as good the own figure is. `what` names the unit, too.
inline void beside(std::string_view what, double own, std::string_view peer, double theirs,
                   Better better = Better::smaller) {
    std::cout << "| " << what << " | " << own << " | " << peer << " | " << theirs << " | "
              << (better == Better::smaller ? theirs / own : own / theirs) << " |" << std::endl;
}

}  // namespace kelvane::bench
