#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/task.h"
#include "resequence/engine.h"

namespace kelvane {

/// A program this long or shorter is renumbered for its preview within some milliseconds.
inline constexpr std::size_t quick_preview_length = 1'000'000;

/// The first lines of a program as they are and as they would become. Very long ones are cut, with
/// "..." in place of the rest.
struct Resequence_preview {
    std::vector<std::string> before;
    std::vector<std::string> after;
    /// Why the run would end without a result, what would surprise in one: a line each, with the
    /// number of the program's line where it is about one. Empty: nothing.
    std::string note;
};

/// Renumbers the whole program as long work. `program` must outlive it; `progress` may be empty,
/// and is for waiting only: it never asks for the end.
Task<Resequence_preview> preview_resequencing(std::string_view program, Resequence_options options,
                                              Resequence_progress progress);

/// What can be shown of a long program meanwhile: its first lines, with GOTOs, whose blocks may be
/// anywhere, as they are.
Resequence_preview preview_start(std::string_view program, const Resequence_options& options);

}  // namespace kelvane
