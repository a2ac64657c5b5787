#include "line/line_watch.h"

namespace kelvane {

void Line_watch::add(Listener& listener) {
    listeners_.push_back(&listener);
    port_.on_crossing = [this](Line_direction direction, std::string_view bytes) {
        for (Listener* each : listeners_) {
            each->crossed(direction, bytes);
        }
    };
}

void Line_watch::remove(Listener& listener) {
    std::erase(listeners_, &listener);
    if (listeners_.empty()) {
        port_.on_crossing = nullptr;
    }
}

}  // namespace kelvane
