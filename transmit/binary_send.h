#pragma once

#include "platform/result.h"
#include "transmit/sender.h"

namespace kelvane {

/// How far a binary send has come.
enum class Binary_sent { all, part };

/// Sends the file `path` byte for byte, flow control before every byte. Ends at the end of the
/// file, when the transfer is given up, or, without Xon/Xoff (where nothing can be paused), on the
/// first press of Stop. Nothing is sent of a file that cannot be read.
[[nodiscard]] Task<Result<Binary_sent>> Sendit_Binary(const Session& session,
                                                      const Transfer_options& options,
                                                      Text_sender& sender, std::string path);

}  // namespace kelvane
