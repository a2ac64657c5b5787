// The small languages: control characters in settings, calls of sub-files, the command line, the
// file dialog's filter, numbers, and the kind of a working copy.

#include "frame/command_line.h"
#include "frame/file_filter.h"
#include "fuzz_input.h"
#include "machines/notation.h"
#include "platform/basic_text.h"
#include "platform/lines.h"
#include "platform/tape_image.h"
#include "transmit/sub_call.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvane;
    fuzz::Fuzz_input input(data, size);
    const auto tape_code = static_cast<Tape_code>(input.choice(4));
    const std::string text(input.rest());
    std::string characters = "as before";
    if (parsit(text, tape_code, characters)) {
        fuzz::require(characters == "as before", "a fault leaves the result alone");
    } else {
        fuzz::require(characters.size() <= text.size(), "notation only shrinks");
    }
    if (const auto call = parse_sub_call(text)) {
        fuzz::require(!call->name.empty() && call->repeats >= 0 && call->repeats <= max_sub_repeats,
                      "a call has a name and a count");
    }
    static_cast<void>(left_out_of_sub_file(text));
    Shared_state state;
    parse_command_line(text, state);
    fuzz::require(filter_pairs(text).size() <= text.size() / 2 + 1, "pairs of the filter");
    fuzz::require(with_extension(text, "NC|*.nc").starts_with(text), "only an extension is added");
    static_cast<void>(CInt(Val(text)));
    const std::string copy = working_copy(text);
    fuzz::require(working_copy(copy) == copy, "a working copy stays as it is");
    fuzz::require(copy == text || count_lines(copy) == count_lines(tape_image_text(text)),
                  "no line is lost or added");
    return 0;
}
