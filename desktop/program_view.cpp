#include "desktop/program_view.h"

#include <QFontDatabase>
#include <QTextBlock>
#include <algorithm>

namespace kelvane {

namespace {

/// A text up to this length is in the widget as a whole.
constexpr std::size_t whole_limit = 1U << 20U;
/// Of a longer one so much, beginning a little before the selection.
constexpr std::size_t part_length = 128U << 10U;
/// A text this short may be a message, which must be read without scrolling sideways; lines of a
/// program stay lines.
constexpr std::size_t message_length = 2000;
constexpr std::size_t part_lead = 16U << 10U;

/// Control characters as their picture symbols, one for one; they would be invisible, or end the
/// line.
void show_control_characters(QString& text) {
    constexpr char16_t pictures = 0x2400;
    constexpr char16_t delete_picture = 0x2421;
    for (QChar& character : text) {
        const char16_t code = character.unicode();
        if (code < u' ' && code != u'\t') {
            character = QChar(static_cast<char16_t>(pictures + code));
        } else if (code == 0x7F) {
            character = QChar(delete_picture);
        }
    }
}

}  // namespace

Program_view::Program_view(Rich_text& text)
    : text_(text), shown_revision_(text.revision() - 1), pace_([this] { refresh(); }) {
    setObjectName(to_screen(text.name()));
    setAccessibleName(to_screen(text.caption()));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setCenterOnScroll(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    // The line that is being sent must be as plain to see while another window is in front.
    QPalette colours = palette();
    for (const auto role : {QPalette::Highlight, QPalette::HighlightedText}) {
        colours.setColor(QPalette::Inactive, role, colours.color(QPalette::Active, role));
    }
    setPalette(colours);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text_.observe([this] { pace_.request(); });
    pace_.run();
}

Program_view::~Program_view() {
    text_.observe({});
}

void Program_view::refresh() {
    const std::size_t selection = text_.selection_start();
    if (shown_revision_ != text_.revision()) {
        shown_revision_ = text_.revision();
        map_ = Text_map(text_.text());
        show_lines_around(selection);
    } else if (const std::size_t line = map_.line_at(selection);
               line < first_line_ || line >= end_line_) {
        show_lines_around(selection);
    }
    show_selection();
}

void Program_view::show_lines_around(std::size_t offset) {
    const std::size_t length = text_.text().size();
    const bool whole = length <= whole_limit;
    const std::size_t from = whole || offset < part_lead ? 0 : offset - part_lead;
    first_line_ = map_.line_at(from);
    end_line_ = whole ? map_.line_count() : map_.line_at(from + part_length) + 1;
    const std::size_t start = map_.start(first_line_);
    const std::string_view part =
        std::string_view(text_.text()).substr(start, map_.start(end_line_) - start);
    form_ = text_form_of(part);
    QString shown;
    shown.reserve(static_cast<qsizetype>(part.size()));
    for (std::size_t line = first_line_; line < end_line_; ++line) {
        shown += (line == first_line_ ? QString() : QString("\n")) + screen_line(line);
    }
    setLineWrapMode(length <= message_length ? QPlainTextEdit::WidgetWidth
                                             : QPlainTextEdit::NoWrap);
    setPlainText(shown);
    if (on_part_changed) {
        on_part_changed();
    }
}

QString Program_view::screen_line(std::size_t line) const {
    QString shown = to_screen(map_.line(text_.text(), line), form_);
    show_control_characters(shown);
    return shown;
}

/// The caret stands at the selection's start, so that long lines show their beginning.
void Program_view::show_selection() {
    const std::size_t start = text_.selection_start();
    QTextCursor cursor(document());
    cursor.setPosition(position_of(start + text_.selection_length()));
    cursor.setPosition(position_of(start), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    ensureCursorVisible();
}

int Program_view::position_of(std::size_t offset) const {
    const std::size_t line = std::clamp(map_.line_at(offset), first_line_, end_line_ - 1);
    const QTextBlock block = document()->findBlockByNumber(static_cast<int>(line - first_line_));
    const std::string_view bytes = map_.line(text_.text(), line);
    const std::size_t start = map_.start(line);
    const std::size_t column = offset <= start ? 0 : std::min(offset - start, bytes.size());
    const auto characters = to_screen(bytes.substr(0, column), form_).size();
    return block.position() + std::min(static_cast<int>(characters), block.length() - 1);
}

QString Program_view::part_text() const {
    const std::size_t from = map_.start(first_line_);
    const std::size_t end = map_.start(end_line_);
    if (from == 0 && end == text_.text().size()) {
        return {};
    }
    return QString("Shown: bytes %1 to %2 of %3").arg(from + 1).arg(end).arg(text_.text().size());
}

}  // namespace kelvane
