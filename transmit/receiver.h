#pragma once

#include <string>

#include "machines/transfer_options.h"
#include "platform/task.h"
#include "session/transfer_control.h"

namespace kelvane {

/// The half of a receive that comes when the port is open; above the start-up, which begins every
/// transfer.
class Receiver {
  public:
    virtual ~Receiver() = default;

    /// Collects what the machine punches and saves it to `path`, or, with `binary`, as it is to the
    /// program directory and to `path`. Returns when the transfer has come to its end, which is
    /// then to be made. `options` outlive the task.
    virtual Task<Transfer_end> receive(const Transfer_options& options, std::string path,
                                       bool binary) = 0;
};

}  // namespace kelvane
