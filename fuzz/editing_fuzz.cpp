// A program on the screen: any bytes, any edits, a start at any line.

#include "editing/lead_in.h"
#include "editing/program_document.h"
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvane;
    fuzz::Fuzz_input input(data, size);
    const auto line = static_cast<std::size_t>(input.choice(64));
    const auto at = static_cast<std::size_t>(input.choice(256));
    const auto removed = static_cast<std::size_t>(input.choice(8));
    const std::string_view typed = input.text();
    const std::string program(input.rest());

    Program_document document;
    document.load(program);
    document.prepare();
    if (document.replace(at, removed, typed)) {
        document.undo();
        fuzz::require(document.text() == program, "all is taken back");
    }
    Start_reading reading(line, std::nullopt);
    reading.step(program);
    for (const std::string& block : propose_start(reading).blocks) {
        fuzz::require(block.find_first_of("\r\n") == std::string::npos, "a block is a line");
    }
    return 0;
}
