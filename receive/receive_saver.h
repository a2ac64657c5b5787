#pragma once

#include <string>
#include <vector>

#include "machines/transfer_options.h"
#include "platform/task.h"
#include "receive/separate_programs.h"
#include "receive/staging_file.h"
#include "session/session.h"

namespace kelvane {

/// Puts a received text where the operator wants it: into one file, or into one for each program
/// number. The staging file goes when the text is safely there, and not before.
class Receive_saver {
  public:
    /// `path` is the target; `staging` outlives the saver. `doubts` are said in the report
    /// of what has been saved; empty without any.
    Receive_saver(const Session& session, Staging_file& staging, std::string path,
                  std::string doubts);

    /// The end of the receive, still to be made.
    [[nodiscard]] Task<Transfer_end> save(std::string text, const Transfer_options& options);

  private:
    [[nodiscard]] Transfer_end save_as_one(const std::string& text);
    [[nodiscard]] Task<Transfer_end> save_separately(std::string text);
    [[nodiscard]] Task<Transfer_end> save_programs(std::vector<Received_program> programs);
    [[nodiscard]] Result<> replace_keeping_old(const std::string& path, const std::string& content);
    [[nodiscard]] Transfer_end saved(std::string note);
    [[nodiscard]] std::string report(std::size_t length) const;

    const Session session_;
    Staging_file& staging_;
    const std::string path_;
    const std::string doubts_;
};

/// The end of a receive whose text or bytes could not be written to `path`, or brought there.
[[nodiscard]] Transfer_end unsaved_end(const std::string& path, const std::string& reason,
                                       const std::string& staging);

}  // namespace kelvane
