// A program on the screen: any bytes, any edits, a start at any line.

#include <vector>

#include "editing/lead_in.h"
#include "editing/program_document.h"
#include "fuzz_input.h"

namespace {

using namespace kelvane;
using namespace kelvane::fuzz;

struct Edit {
    std::size_t at = 0;
    std::size_t removed = 0;
    int how = 0;
    std::string_view added;
};

Edit edit_from(Fuzz_input& input) {
    Edit edit;
    edit.at = static_cast<std::size_t>(input.choice(256)) * 256;
    edit.at += static_cast<std::size_t>(input.choice(256));
    edit.removed = static_cast<std::size_t>(input.choice(8));
    edit.how = input.choice(4);
    edit.added = input.text();
    return edit;
}

/// Long enough for several marks of the line index when the input says so.
std::string repeated(std::string_view part, int times) {
    std::string text;
    for (int i = 0; i < times && text.size() + part.size() <= 10'000; ++i) {
        text += part;
    }
    return text;
}

void line_in_order(const Text_view& view, std::size_t line) {
    const std::size_t start = view.line_start(line);
    const std::size_t end = view.line_end(line);
    require(start <= end && view.line_at(start) == line && view.line_at(end) == line,
            "a line is where it is");
    require(view.offset_at(line, view.column_of(end)) == end, "the column of a line's end");
    const std::size_t position = view.position_of(start);
    require(view.position_of(view.offset_of(position)) == position, "there and back");
    require(view.previous(start) <= start && view.next(view.previous(start)) >= start,
            "a step to the left and back");
    require(view.position_of(end) - position == view.shown(start, end).size(),
            "as many units as are shown");
}

/// Lines and positions after an edit are those of the same text read anew.
void same_as_anew(const Program_document& document) {
    const Text_view view = document.view();
    Line_index anew(document.encoding());
    anew.extend(view.bytes);
    require(anew.line_count() == view.line_count(), "lines as read anew");
    require(anew.unit_count() == view.index->unit_count(), "positions as read anew");
    const std::size_t step = std::max<std::size_t>(view.line_count() / 4, 1);
    for (std::size_t line = 0; line < view.line_count(); line += step) {
        require(view.line_start(line) == anew.line_start(view.bytes, line),
                "a line begins where it begins");
        line_in_order(view, line);
    }
}

void apply(const Edit& edit, Program_document& document) {
    std::string expected = document.text();
    const std::size_t at = edit.at % (expected.size() + 1);
    const std::size_t removed = std::min(edit.removed, expected.size() - at);
    switch (edit.how) {
        case 0:
            require(document.replace(at, removed, edit.added), "a program can be edited");
            require(document.text() == expected.replace(at, removed, edit.added), "as edited");
            break;
        case 1:
            document.typed(at, removed, shown_text(edit.added, Text_encoding::utf8));
            break;
        case 2:
            document.undo();
            break;
        default:
            document.redo();
    }
    same_as_anew(document);
}

void propose(const std::string& program, std::size_t line) {
    Start_reading reading(line, std::nullopt);
    reading.step(program);
    for (const std::string& block : propose_start(reading).blocks) {
        require(block.find_first_of("\r\n") == std::string::npos, "a block is a line");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzz_input input(data, size);
    const auto line = static_cast<std::size_t>(input.choice(64));
    const int times = input.choice(256) + 1;
    std::vector<Edit> edits(static_cast<std::size_t>(input.choice(8)));
    for (Edit& edit : edits) {
        edit = edit_from(input);
    }
    const std::string program = repeated(input.rest(), times);
    Program_document document;
    document.load(program);
    document.prepare();
    same_as_anew(document);
    for (const Edit& edit : edits) {
        apply(edit, document);
    }
    while (document.undo()) {
    }
    require(document.text() == program, "all is taken back");
    propose(program, line);
    return 0;
}
