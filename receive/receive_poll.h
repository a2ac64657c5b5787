#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "machines/transfer_options.h"
#include "platform/task.h"
#include "receive/staging_file.h"
#include "session/session.h"

namespace kelvane {

/// Why no more bytes of a receive are collected.
enum class Collected_end { silence, stopped, line_lost, unwritten, overflow };

struct Collected {
    Collected_end end = Collected_end::silence;
    std::string reason;      ///< of `unwritten`, in the system's words
    std::int64_t bytes = 0;  ///< in the staging file
    Clock_time span{};       ///< from the first of them to the last
};

/// Collects what arrives on an open port into the staging file. It lives on the timers of the
/// transfer (`Transfer_control::Listener`). While nothing comes, none of them runs.
class Receive_poll {
  public:
    /// Takes the timers over. `staging` and `options` outlive the poll.
    Receive_poll(const Session& session, Staging_file& staging, const Transfer_options& options);
    Receive_poll(const Receive_poll&) = delete;
    Receive_poll& operator=(const Receive_poll&) = delete;
    /// The timers rest.
    ~Receive_poll();

    /// Returns when nothing more is to be collected.
    [[nodiscard]] Task<Collected> run();

  private:
    void look();
    void poll();
    void silent();
    void take_waiting();
    [[nodiscard]] bool is_lone_dc2(const std::string& data) const;
    [[nodiscard]] bool store(const std::string& data);
    void end(Collected_end end, std::string reason = {});
    [[nodiscard]] bool stopped() const;

    const Session session_;
    Transfer_control& control_;
    Serial_comm& port_;
    Staging_file& staging_;
    const Transfer_options& options_;
    bool heard_ = false;  ///< the operator has been told that data comes in
    std::int64_t RXbytecount_ = 0;
    Clock_time first_data_{};
    Clock_time last_data_{};
    std::optional<Collected> end_;
};

}  // namespace kelvane
