#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "line/line_view.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "platform/task_keeper.h"
#include "session/transfer_control.h"

namespace kelvane {

/// The line that is tested: that of the machine selected.
struct Tested_line {
    std::string name;  ///< machine and port, for the operator
    Port_settings port;
    /// A line of text as the machine would get it: in its tape code, with its end of block.
    std::function<std::string(std::string_view)> on_wire;
    /// Why the machine's settings cannot be used; empty when they can.
    std::string trouble;
};

/// "Test line": the line open with the machine's settings while nothing else uses it. What its
/// other end does is seen, and its own signals and characters are sent by hand. A transfer that
/// begins takes the line over; closing the window closes the line.
class Test_line_form : public Form {
  public:
    /// `selected` tells the line of the machine that is selected when the window opens the line.
    Test_line_form(Platform& platform, const Transfer_control& control, Line_watch& watch,
                   std::function<Tested_line()> selected);

    Label machine_label{"machine_label"};  ///< machine and port
    Label state_label{"state_label"};      ///< whether the line is open, or why not
    Button Open_button{"Open_button", "&Open again"};

    // What the machine drives, "CTS on", and the switches of the computer's own lines. All that
    // works on the line is live while the line is this form's.
    Label cts_label{"cts_label"};
    Label dsr_label{"dsr_label"};
    Label dcd_label{"dcd_label"};
    Label ri_label{"ri_label"};
    Check_box chk_DTR{"chk_DTR", "&DTR on"};
    Check_box chk_RTS{"chk_RTS", "&RTS on"};

    Button DC1_button{"DC1_button", "Send DC&1 (Xon)"};
    Button DC3_button{"DC3_button", "Send DC&3 (Xoff)"};
    Text_box Line_txt{"Line_txt", "&Text:"};  ///< sent by `on_wire`
    Button Send_line_button{"Send_line_button", "Send l&ine"};
    Button Loop_back_button{"Loop_back_button", "Loop-&back test"};  ///< stops one that runs
    Label loop_back_label{"loop_back_label"};  ///< what came back of what was sent

    Label errors_label{"errors_label"};  ///< framing, parity, overrun, breaks since the opening
    Line_view view;
    Button Clear_button{"Clear_button", "C&lear"};
    Button Close_button{"Close_button", "Close"};

  protected:
    void on_load() override;
    void on_unload() override;

  private:
    void attach_handlers();
    void open_line();
    [[nodiscard]] std::string open_port();
    /// The line is open, and nothing else uses it.
    [[nodiscard]] bool ours() const;
    void let_go(const std::string& why);
    void set_live(bool live);
    void send(const std::string& bytes);
    void send_line();

    [[nodiscard]] Task<> listen();
    void look();
    void show_signals();
    void show_errors();

    void press_loop_back();
    void set_looping(bool looping);
    [[nodiscard]] Task<> loop_back();
    [[nodiscard]] std::string loop_back_result(const std::string& sent) const;

    Platform& platform_;
    Serial_comm& port_;
    const Transfer_control& control_;
    std::function<Tested_line()> selected_;
    Tested_line line_;
    Timer look_;  ///< at what tells nobody that it has changed
    bool open_ = false;
    bool looping_ = false;  ///< the loop-back test runs
    bool stop_looping_ = false;
    std::string returned_;  ///< what has come in during the loop-back test
    Task_keeper tasks_;
};

}  // namespace kelvane
