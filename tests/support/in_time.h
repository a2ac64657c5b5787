#pragma once

#include <chrono>

namespace kelvane::testing {

/// For what comes at once on a quiet computer, however busy this one is.
inline constexpr std::chrono::milliseconds in_time = std::chrono::minutes(2);

}  // namespace kelvane::testing
