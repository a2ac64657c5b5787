#pragma once

#include <string>

#include "platform/files.h"

namespace kelvane {

/// What has been received and lies in the program directory, not saved where the operator wanted
/// it: after Stop, a lost line, a full disk, a loss of power. It is known by a small file beside
/// it, so that a working copy of a send is not taken for it, until the next receive begins.
struct Unsaved_reception {
    enum class Form { raw, text, binary };
    std::string machine;
    std::string path;  ///< where it was to be saved
    Form form = Form::raw;
    std::string file;  ///< that holds it now
};

/// The staging file is about to take what that machine sends; what was unsaved until now is gone.
/// Without its note the next send would take what comes for an old working copy: on failure nothing
/// may be received.
[[nodiscard]] Result<> begin_reception(Files& files, const Unsaved_reception& reception);
/// The staging file holds the converted text from now on.
void mark_converted(Files& files);
/// It has been saved.
void forget_reception(Files& files);
/// Missing without any, or when nothing had come.
[[nodiscard]] Result<Unsaved_reception> unsaved_reception(const Files& files);
/// To be called before something else takes the staging file's place: the bytes go to a name of
/// their own, also when their note cannot be read. When they cannot, they stay, and nothing may be
/// written over them.
[[nodiscard]] Result<> set_reception_aside(Files& files);

}  // namespace kelvane
