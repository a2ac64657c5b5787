#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// True when both name the same machine: without regard to case, in ASCII and beyond it. Lists may
/// be UTF-8 or Latin-1; a name that is no valid UTF-8 is taken for the latter.
[[nodiscard]] bool same_machine_name(std::string_view one, std::string_view other);

/// Why a machine cannot have this name: its files could not have their names then. Empty when it
/// can.
[[nodiscard]] std::string fault_of_machine_name(std::string_view name);

}  // namespace kelvane
