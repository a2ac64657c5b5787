#pragma once

namespace kelvane {

/// From now on assistive programs read, and write, every `Pane_view` as an editable text; to be
/// called before the first is shown, any number of times.
void offer_pane_to_assistive_programs();

}  // namespace kelvane
