#pragma once

#include <optional>
#include <string>

#include "session/session.h"
#include "session/unsaved_reception.h"
#include "transmit/code_tables.h"

namespace kelvane {

/// "Save received data as": what a receive has left unsaved becomes a file, converted or as it
/// came. The bytes stay where they are until the next receive, so that both can be had.
class Save_received {
  public:
    Save_received(const Session& session, const Code_tables& tables)
        : session_(session), tables_(tables) {}

    [[nodiscard]] Task<> run();

  private:
    /// What there is to save, and what the operator should know of it.
    struct Content {
        std::string text;
        std::string doubts;
    };
    [[nodiscard]] Task<std::optional<Content>> content(Unsaved_reception reception);
    [[nodiscard]] Task<std::optional<Content>> converted(Unsaved_reception reception,
                                                         std::string raw);
    [[nodiscard]] Task<> save(Content content, std::string proposed);

    const Session session_;
    const Code_tables& tables_;
};

/// After a save to `path` that failed as `failure` says: asks whether and where to try again. The
/// path to try, which may be the same, or no value when the operator gives up.
[[nodiscard]] Task<std::optional<std::string>> ask_next_path(Operator& op, Message failure,
                                                             std::string path);

}  // namespace kelvane
