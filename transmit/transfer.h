#pragma once

#include <optional>
#include <string>

#include "frame/main_window.h"
#include "transmit/code_tables.h"
#include "transmit/readable_leader.h"
#include "transmit/sender.h"
#include "transmit/sub_files.h"
#include "transmit/transfer_settings.h"

namespace kelvane {

/// The one routine through which every transfer begins, and the clean-up with which every send
/// ends.
class Transfer {
  public:
    enum Mode : int { send = 0, receive = 1 };

    Transfer(Kelvane_lite_form& window, const Code_tables& tables);

    /// Sends the current file, returning when that has ended, or arms a receive and returns. Only
    /// beeps while a transfer is on.
    void Start_transfer(int mode);

  private:
    void read_exclamation_delay();
    void make_readable_leader_strings(int mode);
    [[nodiscard]] Port_settings port_settings(int mode) const;
    [[nodiscard]] bool open_port(int mode);
    [[nodiscard]] Fault_or_ok arm_receive();
    void clean_up();
    void drain();
    void end_with(Fault_or_ok fault);
    /// The operator gave up, or the port has gone.
    [[nodiscard]] bool given_up() const;

    [[nodiscard]] Fault_or_ok run_send();
    [[nodiscard]] Fault_or_ok send_binary();
    [[nodiscard]] Fault_or_ok send_text();
    [[nodiscard]] bool prepare_text();
    void wait_for_start();
    void send_program();
    void send_pass();
    void send_all_lines();
    void send_trailer();
    [[nodiscard]] std::optional<std::string> as_sent(std::string line) const;
    void show_line(const std::string& line);
    void count_line(const std::string& line);
    void begin_next_cycle();
    [[nodiscard]] bool ends_between_lines() const;

    Kelvane_lite_form& window_;
    Shared_state& state_;
    Platform& platform_;
    Text_sender sender_;
    Sub_file_reader lines_;
    Transfer_settings settings_;
    Readable_leader readable_;
    std::string current_line_;
    std::uint64_t sent_count_ = 0;  ///< bytes of the program as progress counts them
    std::string port_trouble_;      ///< shown in the log after the clean-up
};

}  // namespace kelvane
