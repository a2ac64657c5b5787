// A program on the screen: any bytes, any edits, a start at any line.

#include "editing/lead_in.h"
#include "editing/program_document.h"
#include "fuzz_input.h"

namespace {

using namespace kelvane;

/// Lines and positions after an edit are those of the same text read anew.
void same_as_anew(const Program_document& document) {
    const Text_view view = document.view();
    Line_index anew(document.encoding());
    anew.extend(view.bytes);
    fuzz::require(anew.line_count() == view.line_count(), "lines as read anew");
    fuzz::require(anew.unit_count() == view.index->unit_count(), "positions as read anew");
    for (std::size_t line = 0; line < view.line_count(); ++line) {
        const std::size_t start = view.line_start(line);
        fuzz::require(start == anew.line_start(view.bytes, line) && view.line_at(start) == line,
                      "a line begins where it begins");
        fuzz::require(
            view.offset_at(line, view.column_of(view.line_end(line))) == view.line_end(line),
            "the column of a line's end");
    }
}

}  // namespace

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
    std::u16string widget = document.shown(0, program.size());
    const auto follow = [&widget](const Shown_change& change) {
        widget.replace(change.position, change.removed, change.added);
    };
    if (const auto change = document.replace(at, removed, typed)) {
        follow(*change);
        same_as_anew(document);
        fuzz::require(widget == document.shown(0, document.text().size()), "a widget can follow");
        follow(*document.undo());
        fuzz::require(document.text() == program, "all is taken back");
        fuzz::require(widget == document.shown(0, program.size()), "on the screen too");
    }
    Start_reading reading(line, std::nullopt);
    reading.step(program);
    for (const std::string& block : propose_start(reading).blocks) {
        fuzz::require(block.find_first_of("\r\n") == std::string::npos, "a block is a line");
    }
    return 0;
}
