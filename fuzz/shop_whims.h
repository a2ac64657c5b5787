#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "fuzz_input.h"
#include "support/headless_platform.h"

namespace kelvane::fuzz {

/// One of the box's buttons, as the input says.
inline Message_answer any_answer(const Message& message, Fuzz_input& input) {
    std::vector<Message_answer> buttons;
    for (int answer = 0; answer <= static_cast<int>(Message_answer::raw); ++answer) {
        if (testing::can_answer(message.buttons, static_cast<Message_answer>(answer))) {
            buttons.push_back(static_cast<Message_answer>(answer));
        }
    }
    return buttons[static_cast<std::size_t>(input.choice(static_cast<int>(buttons.size())))];
}

/// From now on boxes are answered as the input says, and file dialogs with /nc/PART.NC or, for a
/// file to be written, `saved`. The input outlives the desk's use.
inline void answer_by(Fuzz_input& input, testing::Headless_platform& desk,
                      const std::string& saved) {
    desk.boxes.otherwise = [&input](const Message& message) { return any_answer(message, input); };
    desk.file_dialog.otherwise = [saved](File_purpose purpose) -> std::optional<std::string> {
        return purpose == File_purpose::save ? saved : "/nc/PART.NC";
    };
}

/// What the doubles would report as the failure of a test ends the run as well. To be called when
/// they are gone: some report at their end.
inline void require_no_failure() {
    require(!::testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed(),
            "what the doubles expect");
}

}  // namespace kelvane::fuzz
