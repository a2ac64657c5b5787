#pragma once

#include <string>
#include <string_view>

#include "platform/event_loop.h"
#include "platform/files.h"
#include "session/unsaved_reception.h"

namespace kelvane {

/// The file that takes a receive's bytes as they arrive, and keeps them until what they become is
/// safe. About once a second it is made to survive a loss of power.
class Staging_file {
  public:
    Staging_file(Files& files, Event_loop& loop);

    [[nodiscard]] const std::string& path() const { return path_; }
    /// Empties the file for a new receive, of which `reception` tells all but the file.
    [[nodiscard]] Result<> begin(const Unsaved_reception& reception);
    /// It holds the text of the bytes now.
    void converted() { mark_converted(files_); }
    [[nodiscard]] Result<> append(std::string_view bytes);
    /// To be called now and then: writes through what has waited for a second.
    [[nodiscard]] Result<> settle();
    /// Something waits to be written through.
    [[nodiscard]] bool unsettled() const { return unsettled_; }
    [[nodiscard]] Result<std::string> read() const { return files_.read(path_); }
    /// What it held is safe elsewhere.
    void remove() {
        files_.remove(path_);
        forget_reception(files_);
    }

  private:
    Files& files_;
    Event_loop& loop_;
    std::string path_;
    bool unsettled_ = false;
    Clock_time settled_{};
};

}  // namespace kelvane
