#include "editing/find_bar.h"

#include <algorithm>
#include <utility>

#include "editing/go_to.h"

namespace kelvane {

namespace {

/// Bytes of a long search between two breaths.
constexpr std::size_t slice = std::size_t{1} << 20;
/// What is selected is looked for when it is no longer than this.
constexpr std::size_t most_taken = 200;

constexpr std::string_view read_only_now = "The text shown cannot be changed now";

/// "Stop search" is live as long as a search lives.
class Searching {
  public:
    explicit Searching(Button& stop) : stop_(stop) { stop_.set_enabled(true); }
    Searching(const Searching&) = delete;
    Searching& operator=(const Searching&) = delete;
    ~Searching() { stop_.set_enabled(false); }

  private:
    Button& stop_;
};

}  // namespace

Find_bar::Find_bar(Event_loop& loop, Program_pane& pane)
    : loop_(loop), pane_(pane), searches_(loop) {
    find_frame.set_visible(false);
    go_to_frame.set_visible(false);
    stop_button.set_enabled(false);
    result.plain = true;
    find_text.selects_all_on_focus = true;
    go_to_text.selects_all_on_focus = true;
    find_text.on_enter = [this] { find_next(); };
    next_button.on_click = [this] { find_next(); };
    previous_button.on_click = [this] { find_previous(); };
    replace_text.on_enter = [this] { start(replace_one()); };
    replace_button.on_click = [this] { start(replace_one()); };
    replace_all_button.on_click = [this] { start(replace_all()); };
    go_to_text.on_enter = [this] { start(go_to()); };
    go_to_button.on_click = [this] { start(go_to()); };
    stop_button.on_click = [this] { stop(); };
}

void Find_bar::open(Control& frame, Text_box& field) {
    find_frame.set_visible(&frame == &find_frame);
    go_to_frame.set_visible(&frame == &go_to_frame);
    result.set_caption({});
    if (on_focus) {
        on_focus(&field);
    }
}

void Find_bar::open_find() {
    const Caret& caret = pane_.caret();
    const std::string_view selected =
        pane_.text().bytes.substr(caret.begin(), caret.end() - caret.begin());
    if (!selected.empty() && selected.size() <= most_taken &&
        selected.find_first_of("\r\n") == std::string_view::npos) {
        const std::u16string shown = pane_.text().shown(caret.begin(), caret.end());
        find_text.set_text(typed_bytes(shown, Text_encoding::utf8, {}));
    }
    open(find_frame, find_text);
}

void Find_bar::open_go_to() {
    open(go_to_frame, go_to_text);
}

void Find_bar::close() {
    stop();
    find_frame.set_visible(false);
    go_to_frame.set_visible(false);
    if (on_focus) {
        on_focus(nullptr);
    }
}

void Find_bar::stop() {
    if (!searches_.empty()) {
        searches_.end_all();
        result.set_caption("Stopped");
    }
}

/// A new search ends the one before.
void Find_bar::start(Task<> task) {
    searches_.end_all();
    result.set_caption({});
    searches_.start(std::move(task));
}

void Find_bar::start_find(bool backwards) {
    if (find_text.text().empty()) {
        open_find();
    } else {
        start(find(backwards));
    }
}

std::string Find_bar::bytes_of(const Text_box& field) const {
    const std::u16string shown = shown_text(field.text(), Text_encoding::utf8);
    return typed_bytes(shown, pane_.text().encoding, {});
}

Find_options Find_bar::options(bool backwards) const {
    return {match_case.checked(), whole_word.checked(), backwards};
}

void Find_bar::select(std::size_t from, std::size_t to) {
    pane_.caret().select(from, to);
    pane_.moved();
}

/// Selects nothing: what is typed next must not take the block's place.
void Find_bar::put_caret(std::size_t offset) {
    pane_.caret().put(offset);
    pane_.moved();
}

/// How a search ends; `running` when the program has been changed under it.
template <typename Search>
Task<Search_state> Find_bar::run(Search& search) {
    const Searching searching(stop_button);
    const std::uint64_t revision = pane_.revision();
    Search_state state = Search_state::running;
    while ((state = search.step(pane_.text().bytes, slice)) == Search_state::running) {
        co_await loop_.breath();
        if (pane_.revision() != revision) {
            break;
        }
    }
    co_return state;
}

Task<> Find_bar::find(bool backwards) {
    const std::string wanted = bytes_of(find_text);
    const Caret& caret = pane_.caret();
    Find search(wanted, options(backwards), pane_.text().encoding,
                backwards ? caret.begin() : caret.end());
    const Task<Search_state> work = run(search);
    const Search_state state = co_await work;
    if (state == Search_state::running) {
        co_return;
    }
    if (state == Search_state::not_found) {
        result.set_caption("Not found");
        co_return;
    }
    match_ = {search.found_at(), wanted.size(), pane_.revision()};
    select(match_->at, match_->at + match_->length);
    result.set_caption(!search.wrapped() ? "Found"
                       : backwards       ? "Found, searching on from the end"
                                         : "Found, searching on from the start");
}

bool Find_bar::match_is_selected() const {
    const Caret& caret = pane_.caret();
    return match_ && match_->revision == pane_.revision() && caret.begin() == match_->at &&
           caret.end() == match_->at + match_->length;
}

Task<> Find_bar::replace_one() {
    if (pane_.read_only()) {
        result.set_caption(std::string(read_only_now));
        co_return;
    }
    if (match_is_selected()) {
        pane_.replace(match_->at, match_->length, bytes_of(replace_text));
    }
    co_await find(false);
}

Task<> Find_bar::replace_all() {
    if (pane_.read_only()) {
        result.set_caption(std::string(read_only_now));
        co_return;
    }
    const std::string wanted = bytes_of(find_text);
    const std::string replacement = bytes_of(replace_text);
    Replace_all search(wanted, replacement, options(false), pane_.text().encoding,
                       Program_document::max_grown);
    const Task<Search_state> work = run(search);
    const Search_state state = co_await work;
    if (state == Search_state::running) {
        co_return;
    }
    if (state == Search_state::not_found) {
        result.set_caption(search.too_long() ? "The program would become too long" : "Not found");
        co_return;
    }
    const Replacement& done = search.result();
    if (pane_.replace(done.at, done.removed, done.added)) {
        result.set_caption(std::to_string(done.count) + " replaced");
    }
}

Task<> Find_bar::go_to() {
    const auto place = parse_go_to(go_to_text.text());
    if (!place) {
        result.set_caption("Neither a line (120) nor a block (N120)");
        co_return;
    }
    if (!place->block.empty()) {
        co_await go_to_block(place->block);
        co_return;
    }
    const Text_view text = pane_.text();
    const std::size_t line = std::min(place->line, text.line_count() - 1);
    put_caret(text.line_start(line));
    result.set_caption(line < place->line ? "The last line" : "");
}

Task<> Find_bar::go_to_block(std::string number) {
    const std::size_t from_line = pane_.text().line_at(pane_.caret().place());
    Find_block search(number, pane_.text().line_start(from_line), from_line);
    const Task<Search_state> work = run(search);
    const Search_state state = co_await work;
    if (state == Search_state::running) {
        co_return;
    }
    if (state == Search_state::found) {
        put_caret(search.found_at());
    } else {
        result.set_caption("Not found");
    }
}

}  // namespace kelvane
