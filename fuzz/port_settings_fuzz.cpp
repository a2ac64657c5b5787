// The port's settings text, as any text and as any machine's record makes it.

#include "desktop/serial_line.h"
#include "fuzz_input.h"
#include "machines/transfer_options.h"
#include "session/file_names.h"
#include "session/shared_state.h"
#include "support/memory_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvane;
    fuzz::Fuzz_input input(data, size);
    const std::string_view text = input.text();
    testing::Memory_files files;
    files.put(files.program_path(file_names::port_settings), std::string(input.rest()));
    const Loaded_options loaded = load_transfer_options(files, default_machine);
    for (const std::string_view settings : {text, std::string_view(loaded.options.line_settings)}) {
        if (const auto line = parse_line_settings(settings)) {
            fuzz::require(line->baud > 0, "a speed");
            fuzz::require(line->bits_per_character() >= 7 && line->bits_per_character() <= 12,
                          "a frame");
        }
    }
    fuzz::require(loaded.options.timeout_s >= 1 && loaded.options.timeout_s <= 65, "a time-out");
    return 0;
}
