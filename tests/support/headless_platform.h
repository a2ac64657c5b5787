#pragma once

#include "platform/platform.h"
#include "support/desktop_doubles.h"
#include "support/memory_files.h"
#include "support/recording_printer.h"
#include "support/scripted_machine.h"
#include "support/virtual_loop.h"

namespace kelvane::testing {

/// All doubles together, as a platform to build the program or a single form on.
struct Headless_platform {
    Virtual_loop loop;
    Recorded_windows windows{loop};
    Scripted_message_box boxes;
    Scripted_file_dialog file_dialog{loop};
    Recording_printer printer;
    Scripted_machine machine{loop};
    Recorded_desktop desktop;
    Memory_files files;
    Platform platform = with(loop, printer, files);

    /// The same with others for some of them, which outlive it.
    [[nodiscard]] Platform with(Event_loop& events, Printer& paper, Files& store) {
        return {events, windows, boxes, file_dialog, paper, machine, desktop, store};
    }
};

}  // namespace kelvane::testing
