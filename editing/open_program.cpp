#include "editing/open_program.h"

#include <algorithm>
#include <utility>

#include "platform/save_path.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

/// Of a file that is read in pieces: bytes read, and looked at, between two breaths.
constexpr std::size_t piece_size = std::size_t{2} << 20;
/// So much of a large program is shown while the rest is being read.
constexpr std::size_t first_part = std::size_t{1} << 18;
const std::string unsaved = " has changes that are not saved.";

std::size_t hash_of(std::string_view bytes) {
    return std::hash<std::string_view>{}(bytes);
}

}  // namespace

Open_program::Open_program(Event_loop& loop, Files& files, File_dialog& dialog, Message_box& boxes)
    : loop_(loop), files_(files), dialog_(dialog), boxes_(boxes), recent_(files) {
    document_.load({});
    document_.prepare();
}

Text_view Open_program::view() const {
    if (!loading_) {
        return document_.view();
    }
    return {std::string_view(loading_->text()).substr(0, shown_first_), &first_lines_};
}

std::string Open_program::title() const {
    return path_.empty() ? "New program" : name_of(path_);
}

std::string Open_program::name_loading() const {
    return name_of(loading_path_);
}

int Open_program::percent_loaded() const {
    if (!loading_ || loading_length_ == 0) {
        return 100;
    }
    return static_cast<int>(std::min(loading_->text().size(), loading_length_) * 100 /
                            loading_length_);
}

void Open_program::tell_change() const {
    if (on_change) {
        on_change();
    }
}

/// The caret goes to `place`, or to the start of what now stands there as one: line ends that have
/// met may be one.
void Open_program::edited(std::size_t place) {
    const Text_view text = document_.view();
    caret.put(text.offset_of(text.position_of(place)));
    tell_change();
}

bool Open_program::type(std::u16string_view text) {
    const std::size_t tail = document_.text().size() - caret.end();
    const bool done =
        editable() && document_.typed(caret.begin(), caret.end() - caret.begin(), text);
    if (done) {
        edited(document_.text().size() - tail);
    }
    return done;
}

bool Open_program::erase(bool backwards) {
    if (!caret.selects()) {
        const Text_view text = document_.view();
        const std::size_t at = caret.place();
        caret.put(backwards ? text.previous(at) : text.next(at), true);
    }
    return type({});
}

bool Open_program::replace(std::size_t at, std::size_t removed, const std::string& added) {
    if (loading() || at + removed > document_.text().size()) {
        return false;
    }
    const bool done = document_.replace(at, removed, added);
    if (done) {
        edited(at + added.size());
    }
    return done;
}

void Open_program::undo() {
    if (const auto place = document_.undo()) {
        edited(*place);
    }
}

void Open_program::redo() {
    if (const auto place = document_.redo()) {
        edited(*place);
    }
}

void Open_program::go_to_line(std::size_t line) {
    caret.put(view().line_start(line));
    tell_change();
}

void Open_program::become(std::string path, Program_document document) {
    forget_kept();
    loading_.reset();
    path_ = std::move(path);
    document_ = std::move(document);
    on_disk_ = {document_.text().size(), hash_of(document_.text())};
}

Task<> Open_program::start_new() {
    const bool may = co_await may_be_lost();
    if (!may) {
        co_return;
    }
    ++newest_load_;
    Program_document empty;
    empty.load({});
    empty.prepare();
    become({}, std::move(empty));
    caret = {};
    tell_change();
}

Task<> Open_program::choose_and_open() {
    const bool may = co_await may_be_lost();
    if (!may) {
        co_return;
    }
    dialog_.title = "Open program";
    const auto chosen = co_await dialog_.ask_file(File_purpose::open);
    if (chosen) {
        co_await load_anew(*chosen);
    }
}

Task<> Open_program::open(std::string path) {
    const bool may = co_await may_be_lost();
    if (may) {
        co_await load_anew(path);
    }
}

Task<> Open_program::load_anew(std::string path) {
    const bool loaded = co_await load(path);
    if (loaded) {
        caret = {};
        recent_.add(path);
        tell_change();
    }
}

/// Reads a file into a document of its own, so that one that cannot be read leaves the program in
/// the pane; false then, and when another has been opened meanwhile.
Task<bool> Open_program::load(std::string path) {
    const int mine = ++newest_load_;
    loading_.emplace();
    loading_path_ = path;
    loading_length_ = files_.length(path).value_or(0);
    loading_->begin_load(loading_length_);
    first_lines_ = Line_index();
    shown_first_ = 0;
    std::string failure;
    while (true) {
        const auto piece = files_.read_part(path, loading_->text().size(), piece_size);
        if (!piece || piece->empty()) {
            failure = piece.reason();
            break;
        }
        loading_->load_piece(*piece);
        if (piece->size() < piece_size) {
            break;
        }
        if (shown_first_ == 0) {
            shown_first_ = std::min(piece->size(), first_part);
            first_lines_.extend(view().bytes);
            tell_change();
        }
        co_await loop_.breath();
        if (mine != newest_load_) {
            co_return false;
        }
        tell_change();  // of how much has been read
    }
    while (failure.empty() && !loading_->prepare(piece_size)) {
        co_await loop_.breath();
        if (mine != newest_load_) {
            co_return false;
        }
    }
    Program_document read = std::move(*loading_);
    loading_.reset();
    if (failure.empty()) {
        become(std::move(path), std::move(read));
        co_return true;
    }
    tell_change();
    const std::string trouble = "Cannot read file " + path + ": " + failure;
    co_await tell(trouble);
    co_return false;
}

Task<> Open_program::tell(std::string text) {
    const Message message{std::move(text), std::string(product_name), Message_icon::critical,
                          Message_buttons::ok};
    co_await boxes_.ask(message);
}

Open_program::File_state Open_program::file_state() const {
    if (!files_.exists(path_)) {
        return File_state::gone;
    }
    const auto length = files_.length(path_);
    if (length == on_disk_.length) {
        const auto bytes = files_.read(path_);
        if (!bytes) {
            return File_state::unreadable;
        }
        if (hash_of(*bytes) == on_disk_.hash) {
            return File_state::as_known;
        }
    }
    return File_state::changed;
}

Task<bool> Open_program::may_overwrite(std::string path) {
    const bool own = !path_.empty() && same_path(path, path_);
    const File_state state = own ? file_state() : File_state::changed;
    if (state == File_state::as_known || (!own && !files_.exists(path))) {
        co_return true;
    }
    Message question = overwrite_question(path);
    if (own) {
        question.text = "File " + path;
        question.text += state == File_state::gone ? "\nis no longer there. Write it again?"
                         : state == File_state::unreadable
                             ? "\ncan no longer be read.\n"
                               "Overwrite it with the program shown here?"
                             : "\nhas been changed by another program since it was opened.\n"
                               "Overwrite it with the program shown here?";
    }
    const Message_answer answer = co_await boxes_.ask(question);
    co_return answer == Message_answer::yes;
}

Task<bool> Open_program::write(std::string path) {
    const bool may = co_await may_overwrite(path);
    if (!may) {
        co_return false;
    }
    if (const auto written = files_.replace(path, document_.text()); !written) {
        const std::string trouble = "Cannot save file " + path + ": " + written.reason() +
                                    "\nThe program is still here, with its changes.";
        co_await tell(trouble);
        co_return false;
    }
    path_ = path;
    on_disk_ = {document_.text().size(), hash_of(document_.text())};
    document_.mark_saved();
    forget_kept();
    recent_.add(path);
    tell_change();
    co_return true;
}

Task<bool> Open_program::save() {
    if (loading()) {
        co_return false;
    }
    if (!path_.empty()) {
        const bool written = co_await write(path_);
        co_return written;
    }
    const bool saved = co_await save_as();
    co_return saved;
}

Task<bool> Open_program::save_as() {
    if (loading()) {
        co_return false;
    }
    dialog_.title = "Save program as";
    dialog_.proposed = path_;
    const auto chosen = co_await dialog_.ask_file(File_purpose::save);
    if (!chosen) {
        co_return false;
    }
    const bool saved = co_await write(*chosen);
    co_return saved;
}

Task<bool> Open_program::may_be_lost() {
    const std::string text = title() + unsaved + "\nSave them?";
    const bool may = co_await saved_or_discarded(text);
    if (may) {
        forget_kept();
    }
    co_return may;
}

Task<bool> Open_program::may_be_read(std::string path, std::string purpose) {
    if (path_.empty() || !same_path(path, path_)) {
        co_return true;
    }
    const std::string text = title() + unsaved + "\nSave them before it is " + purpose +
                             "? With Discard the file is " + purpose +
                             "\nas it is on disk; the changes stay in the editor.";
    const bool may = co_await saved_or_discarded(text);
    co_return may;
}

Task<bool> Open_program::saved_or_discarded(std::string text) {
    if (!changed()) {
        co_return true;
    }
    const Message question{std::move(text), "Save changes?", Message_icon::exclamation,
                           Message_buttons::save_discard_cancel};
    const Message_answer answer = co_await boxes_.ask(question);
    if (answer != Message_answer::save) {
        co_return answer == Message_answer::discard;
    }
    const bool saved = co_await save();
    co_return saved;
}

Task<> Open_program::look_at_file() {
    if (loading() || changed() || path_.empty()) {
        co_return;
    }
    const File_state state = file_state();
    if (state == File_state::as_known || state == File_state::gone) {
        co_return;
    }
    const bool loaded = co_await load(path_);
    if (loaded) {
        caret.clamp(document_.view());
        tell_change();
    }
}

void Open_program::keep_for_next_run() {
    if (!changed()) {
        return;
    }
    const std::string kept = files_.program_path(file_names::unsaved_program);
    const bool not_taken_up = !kept_ && files_.exists(kept);
    const auto free = not_taken_up ? files_.rename(kept, kept + " (earlier)") : Result<>();
    static_cast<void>(
        free.and_then([&] { return files_.replace(kept, path_ + "\n" + document_.text()); }));
}

Task<> Open_program::take_up_from_last_run() {
    const std::string kept = files_.program_path(file_names::unsaved_program);
    auto text = files_.read(kept);
    if (text.unreadable()) {
        const std::string trouble =
            "The changes that were not saved in the last run cannot be read: " + text.reason() +
            "\nThey are in " + kept;
        co_await tell(trouble);
    }
    const std::size_t end = text ? text->find('\n') : std::string::npos;
    if (end != std::string::npos) {
        take_up(*text, end);
    }
}

void Open_program::take_up(const std::string& kept_text, std::size_t path_end) {
    std::string path = kept_text.substr(0, path_end);
    Program_document kept;
    kept.load(kept_text.substr(path_end + 1));
    kept.prepare();
    kept.mark_changed();
    become(std::move(path), std::move(kept));
    kept_ = true;
    // Whoever has changed the file since is asked about when it is saved.
    on_disk_ = {};
    tell_change();
}

void Open_program::forget_kept() {
    if (std::exchange(kept_, false)) {
        files_.remove(files_.program_path(file_names::unsaved_program));
    }
}

}  // namespace kelvane
