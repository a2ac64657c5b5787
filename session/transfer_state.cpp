#include "session/transfer_state.h"

#include <algorithm>
#include <iterator>

namespace kelvane {

namespace {

using enum Transfer_state;
using enum Transfer_event;

template <typename... States>
constexpr unsigned in(States... states) {
    return ((1U << static_cast<unsigned>(states)) | ...);
}

/// Characters are leaving, or are only held back.
constexpr unsigned on_the_line = in(sending, held_by_xoff, held_by_cts, paused);
/// Select codes leave while a transfer is prepared.
constexpr unsigned may_output = in(preparing, waiting_for_start) | on_the_line;
constexpr unsigned prepared = in(preparing) | on_the_line;
/// Data that has come is safe: nothing can be stopped any more.
constexpr unsigned at_work_on_data = in(converting, saving);
constexpr unsigned all = (1U << transfer_states) - 1;
constexpr unsigned running = all & ~in(idle);

struct Rule {
    Transfer_event event;
    unsigned from;
    std::optional<Transfer_state> to;  ///< none: the state stays
};

constexpr Rule rules[] = {
    {begun, in(idle), preparing},
    {send_prepared, prepared, waiting_for_start},
    {receive_prepared, prepared, waiting_for_data},
    {output_free, may_output, sending},
    {xoff_holds, may_output, held_by_xoff},
    {cts_holds, may_output, held_by_cts},
    {stop_holds, may_output, paused},
    {all_sent, may_output, draining},
    {data_stored, in(waiting_for_data, receiving), receiving},
    {line_silent, in(receiving), converting},
    {converted, in(converting), saving},
    // Also without a transfer: the first press after a receive resets the button.
    {send_pressed, all & ~at_work_on_data, std::nullopt},
    {stop_pressed, all & ~at_work_on_data, std::nullopt},
    {ended, running, idle},
};
static_assert(std::size(rules) == transfer_events);

}  // namespace

std::optional<Transfer_state> state_after(Transfer_state state, Transfer_event event) {
    const Rule& rule = rules[static_cast<std::size_t>(event)];
    if ((rule.from & in(state)) == 0) {
        return std::nullopt;
    }
    return rule.to.value_or(state);
}

}  // namespace kelvane
