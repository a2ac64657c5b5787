// Recognition and conversion of received bytes, against a plain description of what comes out.

#include "fuzz_input.h"
#include "receive/received_text.h"
#include "receive/separate_programs.h"

namespace {

using namespace kelvane;
using namespace kelvane::fuzz;

std::string plainly_converted(std::string_view raw, const Code_tables& tables,
                              const Received_code& code, const Conversion_options& options) {
    std::string text;
    std::string line;
    bool drop_line = options.ignore_before;
    for (const char byte : raw) {
        const auto value = static_cast<unsigned char>(byte);
        const auto character = static_cast<char>(
            tables.reverse_code_table[value][static_cast<std::size_t>(code.column)]);
        if (value == code.end_of_block) {
            text += drop_line ? "" : line + "\r\n";
            drop_line = false;
            line.clear();
        } else if (options.unwanted.find(byte) == std::string_view::npos &&
                   options.mask.find(character) == std::string_view::npos) {
            line += character;
        }
    }
    return options.ignore_after ? text : text + line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Code_tables tables = Build_code_tables();
    Fuzz_input input(data, size);
    Received_code code{input.yes() ? receive_eia : receive_ascii,
                       static_cast<unsigned char>(input.choice(256))};
    const bool recognises = input.yes();
    Conversion_options options{input.yes(), input.yes(), input.text(), {}};
    options.mask = input.text();
    if (recognises) {
        code = recognise_code(input.rest()).value_or(code);
    }
    Received_text conversion(input.rest(), tables, code, options);
    // Parts of all lengths, though few inputs are long enough for all of them.
    for (std::size_t part = input.rest().size() % 101; !conversion.at_end();
         part = part % 100 + 1) {
        conversion.take(part);
    }
    const std::string text = conversion.finish();
    require(text == plainly_converted(input.rest(), tables, code, options), "text as described");
    static_cast<void>(separate_programs(text));
    return 0;
}
