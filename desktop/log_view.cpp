#include "desktop/log_view.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>
#include <numeric>

#include "desktop/qt_text.h"

namespace kelvane {

Log_view::Log_view(Log_text& log)
    : log_(log), first_(log.position_of_first()), pace_([this] { refresh(); }) {
    setObjectName(to_screen(log.name()));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLineWrapMode(NoWrap);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const QScrollBar* bar = verticalScrollBar();
    QObject::connect(bar, &QScrollBar::valueChanged, this, [this, bar](int value) {
        follows_ = refreshes_ ? follows_ : value == bar->maximum();
    });
    // A wide line brings the other bar, which takes a row away; so does a smaller window.
    QObject::connect(bar, &QScrollBar::rangeChanged, this, [this](int, int end) {
        if (follows_) {
            verticalScrollBar()->setValue(end);
        }
    });
    log_.observe([this] { pace_.request(); });
    log_.on_copy = [this] { copy_selected_or_all(); };
    pace_.run();
}

Log_view::~Log_view() {
    log_.observe({});
    log_.on_copy = nullptr;
}

void Log_view::set_least_size(int columns, int rows) {
    const int bars = verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
    setMinimumSize(columns * fontMetrics().horizontalAdvance('0') + bars,
                   rows * fontMetrics().lineSpacing() + bars);
}

void Log_view::paintEvent(QPaintEvent* event) {
    QElapsedTimer painting;
    painting.start();
    QPlainTextEdit::paintEvent(event);
    pace_.add_cost(painting.nsecsElapsed());
}

void Log_view::refresh() {
    QScrollBar& bar = *verticalScrollBar();
    const int seen = bar.value();
    // Numbers: a cursor would be moved by what is dropped and added.
    const int anchor = textCursor().anchor();
    const int position = textCursor().position();
    refreshes_ = true;
    show_changes();
    select(anchor - dropped_.characters, position - dropped_.characters);
    bar.setValue(follows_ ? bar.maximum() : seen - dropped_.lines);
    refreshes_ = false;
}

/// As one change, which is laid out once.
void Log_view::show_changes() {
    QTextCursor all(document());
    all.beginEditBlock();
    drop_fallen();
    refresh_last();
    while (lines_.size() < log_.parts().size()) {
        append(log_.parts()[lines_.size()]);
    }
    all.endEditBlock();
}

void Log_view::drop_fallen() {
    const auto fallen = std::min<std::uint64_t>(log_.position_of_first() - first_, lines_.size());
    const auto end = lines_.begin() + static_cast<std::ptrdiff_t>(fallen);
    dropped_ = {std::accumulate(lines_.begin(), end, 0), 0};
    lines_.erase(lines_.begin(), end);
    first_ = log_.position_of_first();
    if (dropped_.lines == 0) {
        return;
    }
    QTextCursor cursor = before_block(0);
    if (lines_.empty()) {
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    } else {
        cursor.setPosition(before_block(dropped_.lines).position(), QTextCursor::KeepAnchor);
    }
    dropped_.characters = cursor.position();
    cursor.removeSelectedText();
}

/// What is selected must not grow with what is added behind it.
void Log_view::select(int anchor, int position) {
    QTextCursor cursor = textCursor();
    const int end = document()->characterCount() - 1;
    cursor.setPosition(std::clamp(anchor, 0, end));
    cursor.setPosition(std::clamp(position, 0, end), QTextCursor::KeepAnchor);
    if (cursor != textCursor() || cursor.anchor() != textCursor().anchor()) {
        setTextCursor(cursor);  // which scrolls to it
    }
}

void Log_view::refresh_last() {
    if (lines_.empty()) {
        return;
    }
    const Log_text::Part& last = log_.parts()[lines_.size() - 1];
    if (last.text.size() == last_length_) {
        return;
    }
    QTextCursor cursor = before_block(blockCount() - lines_.back());
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    lines_.pop_back();
    write(cursor, last);
}

void Log_view::append(const Log_text::Part& part) {
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    if (!lines_.empty()) {
        cursor.insertBlock();
    }
    write(cursor, part);
}

/// In place of what the cursor has selected.
void Log_view::write(QTextCursor& cursor, const Log_text::Part& part) {
    QTextCharFormat format;
    format.setForeground(colour_of(part.side));
    cursor.insertText(to_screen(part.text), format);
    lines_.push_back(1 + static_cast<int>(std::count(part.text.begin(), part.text.end(), '\n')));
    last_length_ = part.text.size();
}

QTextCursor Log_view::before_block(int number) const {
    return QTextCursor(document()->findBlockByNumber(number));
}

/// Both can be told from each other and read on the window's own ground, bright or dark.
QColor Log_view::colour_of(Log_text::Side side) const {
    const bool dark = palette().color(QPalette::Base).lightness() < 128;
    switch (side) {
        case Log_text::Side::outgoing:
            return dark ? QColor(0x8A, 0xC4, 0xFF) : QColor(0x00, 0x3E, 0xA8);
        case Log_text::Side::incoming:
            return dark ? QColor(0xFF, 0xC0, 0x70) : QColor(0x8F, 0x3A, 0x00);
        default:
            return palette().color(QPalette::Text);
    }
}

void Log_view::copy_selected_or_all() {
    pace_.run();
    if (textCursor().hasSelection()) {
        copy();
    } else {
        QApplication::clipboard()->setText(toPlainText());
    }
}

}  // namespace kelvane
