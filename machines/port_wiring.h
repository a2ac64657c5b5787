#pragma once

#include <map>
#include <string>

#include "platform/files.h"

namespace kelvane {

/// The device that a COM number is wired to by "\Serial port devices", or the usual one. Fails when
/// that file is there and cannot be read: the usual device may be another machine's.
[[nodiscard]] Result<std::string> read_device(const Files& files, int com_port);

/// The devices of the COM numbers with changes that are not stored yet.
class Port_wiring {
  public:
    explicit Port_wiring(Files& files) : files_(files) {}

    /// The device of a number: the changed one, else as `read_device`.
    [[nodiscard]] Result<std::string> device(int com_port) const;
    /// An empty device gives the number back its usual one.
    void set_device(int com_port, const std::string& device);
    /// Drops the changes.
    void forget() { changes_.clear(); }
    /// Stores and drops the changes. When the file cannot be read or written it stays whole and the
    /// changes are kept.
    [[nodiscard]] Result<> store();

  private:
    Files& files_;
    std::map<int, std::string> changes_;
};

}  // namespace kelvane
