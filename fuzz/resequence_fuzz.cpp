// Renumbering of any bytes with any options.

#include "fuzz_input.h"
#include "platform/basic_text.h"
#include "platform/lines.h"
#include "resequence/engine.h"
#include "resequence/preview.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvane;
    fuzz::Fuzz_input input(data, size);
    Resequence_options options;
    options.start = input.choice(256) - 2;
    options.increment = input.choice(256) - 2;
    options.maximum = input.choice(256) * 100;
    options.digits = input.choice(most_digits + 1);
    for (bool* option : {&options.leading_zeros, &options.add_space, &options.decimal_numbers,
                         &options.n_lines_only, &options.t_lines_only, &options.skip_id_lines,
                         &options.blank_lines, &options.comments, &options.bracket_comments,
                         &options.gotos, &options.o_same_as_n, &options.h_with_w}) {
        *option = input.yes();
    }
    options.n_character = input.text();
    const std::string_view program = input.rest();
    const Resequence_result result = resequence(program, options);
    if (const auto* done = std::get_if<Resequenced>(&result)) {
        fuzz::require(count_lines(done->text) == count_lines(without_end_mark(program)) ||
                          options.n_character.find_first_of(cr_lf) != std::string::npos,
                      "no line is lost or added");
    }
    static_cast<void>(at_once(preview_resequencing(program, options, {})));
    return 0;
}
