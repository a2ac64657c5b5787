#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "receive/receive_poll.h"
#include "receive/received_code.h"
#include "receive/received_text.h"
#include "receive/reception_doubts.h"
#include "receive/staging_file.h"
#include "session/session.h"
#include "transmit/code_tables.h"
#include "transmit/receiver.h"

namespace kelvane {

/// A receive on an open port, as a row of values: the bytes that arrive, the tape code recognised
/// in them, their text, its programs, the files. The bytes stay on disk until what they became is
/// safe there.
class Receive : public Receiver {
  public:
    Receive(const Session& session, const Code_tables& tables);

    Task<Transfer_end> receive(const Transfer_options& options, std::string path,
                               bool binary) override;

    /// What a reception has become.
    struct Text {
        std::string text;
        bool recognised = true;  ///< else the bytes as they came
        Reception_doubts doubts;
    };
    /// The text of the bytes in the staging file, which holds the text afterwards; or the message
    /// that tells why a file could not be read or written: then it holds the bytes still. So it
    /// does when they cannot be recognised, which a box has told, and are returned as they are, and
    /// when nothing is left of them.
    using Text_or_trouble = std::variant<Text, Message>;
    [[nodiscard]] Task<Text_or_trouble> code_convert_file(const Transfer_options& options);

  private:
    [[nodiscard]] std::optional<Transfer_end> stage(const std::string& machine,
                                                    const std::string& path, bool binary);
    [[nodiscard]] Task<Collected> collect(const Transfer_options& options);
    [[nodiscard]] Transfer_end unfinished_end(const Collected& collected,
                                              const std::string& path) const;
    [[nodiscard]] Transfer_end stopped_end(std::string kept, const std::string& path) const;
    [[nodiscard]] Task<Transfer_end> save_binary(std::int64_t bytes, std::string path);
    [[nodiscard]] Transfer_end keep_binary(const std::string& path);
    [[nodiscard]] Task<Transfer_end> save_text(const Transfer_options& options, std::string path);
    [[nodiscard]] Task<Transfer_end> save(const std::string& text, const Transfer_options& options,
                                          std::string path, const std::string& doubts);
    [[nodiscard]] Task<bool> tries_again(Transfer_end& end, std::string& path);
    void tell(Transfer_end& end, const std::string& doubts) const;
    void name_cause(std::string_view raw);
    [[nodiscard]] Result<> stage_text(const std::string& text);

    const Session session_;
    const Code_tables& tables_;
    Staging_file staging_;
    Clock_time span_{};  ///< from the first byte to the last
    std::string cause_;  ///< why there is no text in them, as far as the line's errors do not tell
};

}  // namespace kelvane
