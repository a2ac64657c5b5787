#pragma once

#include <map>
#include <string>

#include "platform/files.h"

namespace kelvane {

/// The devices of the COM numbers with changes that are not stored yet.
class Port_wiring {
  public:
    explicit Port_wiring(Files& files) : files_(files) {}

    /// The device of a number: the changed one, else that of "\Serial port devices", else the
    /// usual one.
    [[nodiscard]] std::string device(int com_port) const;
    /// An empty device gives the number back its usual one.
    void set_device(int com_port, const std::string& device);
    /// Drops the changes.
    void forget() { changes_.clear(); }
    /// Stores and drops the changes. False when the file could not be read or written; it is whole
    /// then and the changes are kept.
    [[nodiscard]] bool store();

  private:
    [[nodiscard]] std::string path() const;

    Files& files_;
    std::map<int, std::string> changes_;
};

}  // namespace kelvane
