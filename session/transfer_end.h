#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/fault.h"
#include "platform/message_box.h"

namespace kelvane {

enum class Direction { send, receive };

/// How a transfer has ended.
enum class Outcome {
    done,
    stopped,           ///< by the operator, a later command or the end of the program
    refused,           ///< it could not begin, or not go on; its box says why
    lost_line,         ///< the port has gone
    disk_full,         ///< what had come could not be written
    nothing_received,  ///< nothing of what had come is text
    fault,             ///< a limit was met
};

/// The end of a transfer, and what the operator is shown of it.
struct Transfer_end {
    Outcome outcome = Outcome::done;
    std::string log;   ///< the editor's text
    std::string note;  ///< beside the idle machine in the status bar, before the remarks
    /// Of the program, from 1: the last block of a send that has left for certain, though the send
    /// has not come to its end. In a called file the line of the call.
    std::optional<std::size_t> last_line;
    std::optional<Message> box;  ///< shown when all else has been put in order
    /// What was wrong although it was done, for the transfer log too; sentences with line feeds
    /// between them.
    std::string remarks;
    bool holds_stop = false;  ///< Stop reads "Reset", as after a press
    bool quiet = false;       ///< a send that ends without a beep
};

/// The end with that outcome, which shows a box and nothing else.
[[nodiscard]] Transfer_end end_with(Outcome outcome, Message box);
/// The end by a fault, whose words a critical box shows.
[[nodiscard]] Transfer_end end_with(Fault fault);
/// Adds what else the operator should know, to the editor's text too; sentences have line feeds
/// between them. Nothing happens for an empty remark.
void add_remark(Transfer_end& end, const std::string& remark);
/// A critical box; `title` is the product's name when nothing else is said.
[[nodiscard]] Message critical_box(std::string text, std::string title = std::string(product_name));
/// An exclamation.
[[nodiscard]] Message warning_box(std::string text, std::string title);

}  // namespace kelvane
