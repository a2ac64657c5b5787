#include "editing/program_pane.h"

#include <algorithm>
#include <utility>

#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr int least_zoom = 50;
constexpr int most_zoom = 400;
constexpr int zoom_step = 10;

/// Of a text so long as to be read in slices, by its first lines.
Text_encoding encoding_of_start(std::string_view text) {
    constexpr std::size_t sample = std::size_t{1} << 20;
    Encoding_check check;
    check.feed(text.size() <= sample ? text : text.substr(0, text.substr(0, sample).rfind('\n')));
    return check.result();
}

}  // namespace

Program_pane::Program_pane(Rich_text& log, Open_program& program, Desktop_services& desktop,
                           Files& files, std::function<bool()> transfer_runs)
    : Control(log.name(), log.caption()),
      log_(log),
      program_(program),
      desktop_(desktop),
      files_(files),
      transfer_runs_(std::move(transfer_runs)),
      log_revision_(log.revision()) {
    log_.observe([this] { log_changed(); });
    program_.on_change = [this] { content_changed(); };
    const auto kept = files_.read(files_.program_path(file_names::editor_zoom));
    if (const int percent = whole_number(kept.value_or(std::string())); percent > 0) {
        zoom_ = std::clamp(percent, least_zoom, most_zoom);
    }
}

Program_pane::~Program_pane() {
    log_.observe({});
    program_.on_change = {};
}

Program_pane::Content Program_pane::content() const {
    return log_.text().empty() || log_aside_ ? Content::program : Content::log;
}

Text_view Program_pane::text() const {
    if (content() == Content::log) {
        return {log_.text(), &log_lines_, log_encoding_};
    }
    return program_.view();
}

Caret& Program_pane::caret() {
    return content() == Content::log ? log_caret_ : program_.caret;
}

const Caret& Program_pane::caret() const {
    return content() == Content::log ? log_caret_ : program_.caret;
}

bool Program_pane::read_only() const {
    return content() == Content::log || !program_.editable() || transfer_runs_();
}

std::string Program_pane::note() const {
    const Text_view shown = text();
    const std::size_t line = shown.line_at(caret().place());
    const std::string place =
        "   Line " + std::to_string(line + 1) + " of " + std::to_string(shown.line_count());
    if (content() == Content::log) {
        return (log_ready_ ? std::string("Messages") : std::string("Reading ...")) + place;
    }
    if (program_.loading()) {
        return "Reading " + program_.name_loading() + " ... " +
               std::to_string(program_.percent_loaded()) + " %";
    }
    std::string said = program_.title() + (program_.changed() ? ", changed" : "");
    if (!program_.editable()) {
        said += ", too large to edit";
    } else if (transfer_runs_()) {
        said += ", not to be edited during a transfer";
    }
    return said + place + ", column " + std::to_string(shown.column_of(program_.caret.place()) + 1);
}

void Program_pane::log_changed() {
    if (log_revision_ != log_.revision()) {
        log_revision_ = log_.revision();
        log_encoding_ = encoding_of_start(log_.text());
        log_lines_ = Line_index(log_encoding_);
        log_ready_ = false;
        log_caret_ = {};
        // Texts that come in the course of one transfer stay aside with it.
        log_aside_ = log_aside_ && !log_.text().empty() && transfer_runs_();
        following_ = true;
        prepare(Text_view::long_line);
        ++revision_;
    }
    changed();
}

bool Program_pane::prepare(std::size_t budget) {
    log_ready_ = log_ready_ || log_lines_.extend(log_.text(), budget);
    return log_ready_;
}

void Program_pane::content_changed() {
    ++revision_;
    changed();
}

void Program_pane::show_program() {
    if (!std::exchange(log_aside_, true)) {
        content_changed();
    }
}

void Program_pane::show_log() {
    if (std::exchange(log_aside_, false)) {
        content_changed();
    }
}

std::optional<Program_pane::Band> Program_pane::band() const {
    if (content() != Content::log || log_.selection_length() == 0) {
        return std::nullopt;
    }
    return Band{log_.selection_start(), log_.selection_length()};
}

bool Program_pane::band_is_away() const {
    return log_.selection_length() > 0 && (log_aside_ || !following_);
}

void Program_pane::stop_following() {
    following_ = false;
}

void Program_pane::follow() {
    following_ = true;
    show_log();
    changed();
}

void Program_pane::type(std::u16string_view text) {
    if (may_edit()) {
        program_.type(text);
    }
}

void Program_pane::erase(bool backwards) {
    if (may_edit()) {
        program_.erase(backwards);
    }
}

bool Program_pane::replace(std::size_t at, std::size_t removed, const std::string& added) {
    return may_edit() && program_.replace(at, removed, added);
}

void Program_pane::undo() {
    if (may_edit()) {
        program_.undo();
    }
}

void Program_pane::redo() {
    if (may_edit()) {
        program_.redo();
    }
}

void Program_pane::cut() {
    if (may_edit() && caret().selects()) {
        copy();
        program_.erase(false);
    }
}

void Program_pane::copy() const {
    const Caret& selected = caret();
    if (selected.selects()) {
        desktop_.copy_text(text().shown(selected.begin(), selected.end()));
    }
}

void Program_pane::paste() {
    if (may_edit()) {
        program_.end_step();
        program_.type(desktop_.copied_text());
        program_.end_step();
    }
}

void Program_pane::select_all() {
    caret().select(0, text().bytes.size());
    moved();
}

void Program_pane::step(Caret_step step, bool select, std::size_t page) {
    caret().step(text(), step, select, page);
    moved();
}

void Program_pane::moved() {
    following_ = false;
    program_.end_step();
    changed();
}

void Program_pane::zoom_by(int steps) {
    set_zoom(zoom_ + steps * zoom_step);
}

void Program_pane::set_zoom(int percent) {
    percent = std::clamp(percent, least_zoom, most_zoom);
    if (percent == zoom_) {
        return;
    }
    zoom_ = percent;
    // A size that cannot be written holds for this run.
    static_cast<void>(files_.replace(files_.program_path(file_names::editor_zoom),
                                     std::to_string(zoom_) + "\r\n"));
    changed();
}

}  // namespace kelvane
