// Programs that call each other in any way: what was tried whole before the send is what comes.

#include "fuzz_input.h"
#include "support/memory_files.h"
#include "transmit/sub_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvane;
    fuzz::Fuzz_input input(data, size);
    testing::Memory_files files;
    for (const char* name : {"/nc/A", "/nc/B", "/nc/C", "/lib/D"}) {
        files.put(name, std::string(input.text()));
    }
    const std::string program(input.rest());
    files.put("/nc/MAIN", program);
    Sub_file_reader reader(files);
    reader.open(std::make_shared<const std::string>(program), "/nc/MAIN", "/lib");
    if (reader.check()) {
        return 0;
    }
    constexpr std::uint64_t enough = 200'000;
    std::uint64_t total = 0;
    std::string line;
    reader.Get_next_line(Sub_file_reader::reset, line);
    while (total < enough && reader.Get_next_line(1, line)) {
        total += line.size() + 2;
    }
    fuzz::require(!reader.error(), "a program that was tried comes to its end");
    fuzz::require(total >= enough || total == reader.total(), "the total was right");
    return 0;
}
