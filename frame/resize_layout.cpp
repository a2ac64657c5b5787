#include "frame/resize_layout.h"

#include <algorithm>

#include "platform/basic_text.h"

namespace kelvane {

Main_window_layout resize_layout(int inner_width, int inner_height, int bar_height) {
    const int height = std::max(0, CInt(inner_height - 1.5 * bar_height));
    return {inner_width, height, CInt(height + bar_height / 4.0)};
}

}  // namespace kelvane
