#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "frame/compare_form.h"
#include "frame/main_window.h"
#include "print/program_listing.h"
#include "resequence/resequence_form.h"
#include "transmit/transfer.h"

namespace kelvane {

/// What the File menu and a command line can ask for, on `filename`. One runs at a time.
class Commands {
  public:
    Commands(Kelvane_lite_form& window, Transfer& transfer, Program_listing& listing,
             resequence_form_lite& resequence_form);

    /// True while one runs.
    [[nodiscard]] bool running() const { return running_ > 0; }

    /// Each returns when all that it has begun has ended.
    /// With a `part` that is sent of the file.
    [[nodiscard]] Task<Outcome> send(bool binary, std::optional<Program_part> part = std::nullopt);
    [[nodiscard]] Task<Outcome> receive(bool binary);
    /// True when the printer has taken the listing.
    [[nodiscard]] Task<bool> print();
    /// Refuses ".bak" files, which it makes itself. True when the program has been renumbered.
    [[nodiscard]] Task<bool> resequence();

    /// A send of this run of the program that has not come to its end, until another one has.
    struct Broken_send {
        std::string path;
        std::size_t line;  ///< from 1: the last block that has left for certain
    };
    [[nodiscard]] const std::optional<Broken_send>& broken_send() const { return broken_send_; }
    /// A send has become `broken_send`.
    std::function<void(const Broken_send&)> on_broken_send;
    /// The last receive that has put a program into its file.
    [[nodiscard]] const std::optional<Received_file>& received() const { return received_; }
    /// The path of a program that has been received over another one; once for each.
    [[nodiscard]] std::optional<std::string> take_offer() { return std::exchange(offer_, {}); }

  private:
    void note_send(const std::string& path, Outcome outcome);
    [[nodiscard]] Task<std::optional<std::string>> old_program(std::string path) const;
    [[nodiscard]] Task<> note_receive(Received_file received);

    Kelvane_lite_form& window_;
    Transfer& transfer_;
    Program_listing& listing_;
    resequence_form_lite& resequence_form_;
    int running_ = 0;
    std::optional<Broken_send> broken_send_;
    std::optional<Received_file> received_;
    std::optional<std::string> offer_;
};

}  // namespace kelvane
