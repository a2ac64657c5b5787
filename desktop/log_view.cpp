#include "desktop/log_view.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>
#include <numeric>

#include "desktop/qt_text.h"

namespace kelvane {

Log_view::Log_view(Log_text& log) : log_(log), first_(log.position_of_first()) {
    setObjectName(to_screen(log.name()));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLineWrapMode(NoWrap);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    log_.observe([this] { refresh(); });
    log_.on_copy = [this] { copy_selected_or_all(); };
    refresh();
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

void Log_view::refresh() {
    // What is added where the caret stands must not be selected with what is.
    QTextCursor own = textCursor();
    own.setKeepPositionOnInsert(true);
    setTextCursor(own);
    QScrollBar& bar = *verticalScrollBar();
    const bool follows = bar.value() == bar.maximum();
    const int seen = bar.value() - drop_fallen();
    refresh_last();
    while (lines_.size() < log_.parts().size()) {
        append(log_.parts()[lines_.size()]);
    }
    bar.setValue(follows ? bar.maximum() : seen);
}

/// The lines that have gone.
int Log_view::drop_fallen() {
    const auto fallen = std::min<std::uint64_t>(log_.position_of_first() - first_, lines_.size());
    const auto end = lines_.begin() + static_cast<std::ptrdiff_t>(fallen);
    const int count = std::accumulate(lines_.begin(), end, 0);
    lines_.erase(lines_.begin(), end);
    first_ = log_.position_of_first();
    if (lines_.empty()) {
        clear();
    } else if (count > 0) {
        QTextCursor cursor = before_block(0);
        cursor.setPosition(before_block(count).position(), QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
    }
    return count;
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
    if (textCursor().hasSelection()) {
        copy();
    } else {
        QApplication::clipboard()->setText(toPlainText());
    }
}

}  // namespace kelvane
