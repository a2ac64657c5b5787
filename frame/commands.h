#pragma once

#include <string>

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
    [[nodiscard]] Task<Outcome> send(bool binary);
    [[nodiscard]] Task<Outcome> receive(bool binary);
    [[nodiscard]] Task<> print();
    /// Refuses ".bak" files, which it makes itself.
    [[nodiscard]] Task<> resequence();

  private:
    Kelvane_lite_form& window_;
    Transfer& transfer_;
    Program_listing& listing_;
    resequence_form_lite& resequence_form_;
    int running_ = 0;
};

}  // namespace kelvane
