#pragma once

namespace kelvane {

/// Where the resizable parts of the main window stand, in window coordinates: the editor from the
/// top left corner, the progress bar and the two buttons in one row under it.
struct Main_window_layout {
    int text_width;
    int text_height;
    int row_top;
};

/// The layout for an inner size and the progress bar's height, all in the same unit.
Main_window_layout resize_layout(int inner_width, int inner_height, int bar_height);

}  // namespace kelvane
