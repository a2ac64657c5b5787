#pragma once

#include <optional>
#include <string>

namespace kelvane {

/// Bits a second at which an open serial device really sends, as its driver reports it. No value
/// where the driver reports none.
std::optional<int> line_speed(int handle);

/// Adapters round a speed that they do not have to one that they have, and say nothing. What is to
/// be told of a device that runs at `actual` instead of `wanted` baud; empty when the difference
/// (2 % at most) is one that every receiver follows.
std::string speed_trouble(const std::string& device, int wanted, int actual);

}  // namespace kelvane
