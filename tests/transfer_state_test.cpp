// Which state of a transfer allows which event, and what comes of it.

#include "session/transfer_state.h"

#include <gtest/gtest.h>
#include <string_view>

namespace kelvane {
namespace {

TEST(TransferState, AllowsWhatTheTableAllows) {
    // A letter a state, in their order; "." is not allowed. Columns: begun, send_prepared,
    // receive_prepared, output_free, xoff_holds, cts_holds, stop_holds, all_sent, data_stored,
    // line_silent, converted, send_pressed, stop_pressed, ended.
    constexpr std::string_view letters = "ipwsxcPdDrCS";
    constexpr std::string_view table[transfer_states] = {
        "p..........ii.",  // idle
        ".wDsxcPd...ppi",  // preparing
        "...sxcPd...wwi",  // waiting_for_start
        ".wDsxcPd...ssi",  // sending
        ".wDsxcPd...xxi",  // held_by_xoff
        ".wDsxcPd...cci",  // held_by_cts
        ".wDsxcPd...PPi",  // paused
        "...........ddi",  // draining
        "........r..DDi",  // waiting_for_data
        "........rC.rri",  // receiving
        "..........S..i",  // converting
        ".............i",  // saving
    };
    for (std::size_t state = 0; state < transfer_states; ++state) {
        for (std::size_t event = 0; event < transfer_events; ++event) {
            const auto next = state_after(Transfer_state(state), Transfer_event(event));
            EXPECT_EQ(next ? letters[std::size_t(*next)] : '.', table[state][event])
                << "state " << state << ", event " << event;
        }
    }
}

}  // namespace
}  // namespace kelvane
