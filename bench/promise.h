#pragma once

#include <iostream>
#include <string_view>

namespace kelvane::bench {

enum class Limit { at_least, at_most };

/// Prints a figure beside what is promised of it; false when the promise is broken.
inline bool promise(std::string_view what, double value, Limit kind, double limit) {
    const bool least = kind == Limit::at_least;
    const bool kept = least ? value >= limit : value <= limit;
    std::cout << (kept ? "  ok      " : "  BROKEN  ") << what << ": " << value
              << (least ? " (at least " : " (at most ") << limit << ")" << std::endl;
    return kept;
}

}  // namespace kelvane::bench
