#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvane {

/// The description and pattern pairs of a filter ("NC programs|*.nc;*.tap|All files|*"). A
/// description without a pattern gets "*".
std::vector<std::pair<std::string, std::string>> filter_pairs(std::string_view filter);

/// `path` with the first extension that the filter names, when its file name has none; unchanged
/// when it has one or the filter names none ("*", "*.*").
std::string with_extension(const std::string& path, std::string_view filter);

}  // namespace kelvane
