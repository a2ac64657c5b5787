#pragma once

#include <string_view>
#include <vector>

#include "platform/serial_port.h"

namespace kelvane {

/// Hands what crosses the line to all that look at it. While nobody does, the port is not watched
/// and a transfer pays nothing.
class Line_watch {
  public:
    class Listener {
      public:
        virtual ~Listener() = default;
        /// Called in the course of the port's own work: must not call the port.
        virtual void crossed(Line_direction direction, std::string_view bytes) = 0;
    };

    /// The port's `on_crossing` belongs to the watch from now on.
    explicit Line_watch(Serial_comm& port) : port_(port) {}
    Line_watch(const Line_watch&) = delete;
    Line_watch& operator=(const Line_watch&) = delete;
    ~Line_watch() { port_.on_crossing = nullptr; }

    void add(Listener& listener);
    /// Nothing happens for one that has not been added.
    void remove(Listener& listener);

  private:
    Serial_comm& port_;
    std::vector<Listener*> listeners_;
};

}  // namespace kelvane
