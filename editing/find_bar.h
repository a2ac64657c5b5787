#pragma once

#include <functional>
#include <optional>
#include <string>

#include "editing/find.h"
#include "editing/program_pane.h"
#include "platform/controls.h"
#include "platform/event_loop.h"
#include "platform/task_keeper.h"

namespace kelvane {

/// The bars under the pane, of which at most one is open: finding and replacing, and going to a
/// line or a block. Searches let others in all the while and end when the text changes.
class Find_bar {
  public:
    /// Both outlive the bar.
    Find_bar(Event_loop& loop, Program_pane& pane);

    Control find_frame{"find_bar"};
    Text_box find_text{"find_text", "F&ind:"};
    Text_box replace_text{"replace_text", "Re&place by:"};
    Check_box match_case{"match_case", "&Match case"};
    Check_box whole_word{"whole_word", "&Whole word"};
    Button next_button{"find_next", "Ne&xt"};
    Button previous_button{"find_previous", "Pre&vious"};
    Button replace_button{"replace_one", "Rep&lace"};
    Button replace_all_button{"replace_all", "&Replace all"};

    Control go_to_frame{"go_to_bar"};
    Text_box go_to_text{"go_to_text", "Line, or &N number (N120):"};
    Button go_to_button{"go_to_button", "&Go to"};

    /// What has come of the last search; plain text.
    Label result{"find_result"};
    /// Live while a search runs.
    Button stop_button{"stop_search", "St&op search"};

    /// Opens the bar with what is selected, if that is within a line.
    void open_find();
    /// Opens the bar for a line or a block in place of the other one.
    void open_go_to();
    /// A search that runs ends; what has been found stays selected.
    void close();
    /// From the selection on, and from the other end of the text if need be.
    void find_next() { start_find(false); }
    void find_previous() { start_find(true); }

    /// The named control, or the pane (null), shall have the keyboard.
    std::function<void(const Control* control)> on_focus;

  private:
    /// Where the text wanted has been found and is selected.
    struct Match {
        std::size_t at, length;
        std::uint64_t revision;
    };

    void open(Control& frame, Text_box& field);
    void start(Task<> task);
    void start_find(bool backwards);
    template <typename Search>
    Task<Search_state> run(Search& search);
    Task<> find(bool backwards);
    Task<> replace_one();
    Task<> replace_all();
    Task<> go_to();
    Task<> go_to_block(std::string number);
    void select(std::size_t from, std::size_t to);
    void put_caret(std::size_t offset);
    void stop();
    /// What a field holds, in the bytes of the text shown.
    [[nodiscard]] std::string bytes_of(const Text_box& field) const;
    [[nodiscard]] Find_options options(bool backwards) const;
    [[nodiscard]] bool match_is_selected() const;

    Event_loop& loop_;
    Program_pane& pane_;
    std::optional<Match> match_;
    Task_keeper searches_;
};

}  // namespace kelvane
