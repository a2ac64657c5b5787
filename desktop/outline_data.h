#pragma once

#include <QPainterPath>

namespace kelvane {

/// The outline that the path data of an SVG drawing describe: the commands M, L, H, V, C and Z,
/// absolute or relative, with numbers parted by blanks or commas. What is not understood ends it.
[[nodiscard]] QPainterPath outline_from(const char* data);

}  // namespace kelvane
