#include "desktop/pane_view.h"

#include <QAccessible>
#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QMimeData>
#include <QPaintEvent>
#include <QScrollBar>
#include <algorithm>

#include "desktop/pane_accessible.h"
#include "desktop/qt_text.h"

namespace kelvane {

namespace {

/// Bytes of a long log in which lines are looked for before other events have their turn.
constexpr std::size_t slice = std::size_t{8} << 20;

struct Key_step {
    QKeySequence::StandardKey moves, selects;
    Caret_step step;
};

constexpr Key_step key_steps[] = {
    {QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar, Caret_step::right},
    {QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar, Caret_step::left},
    {QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord, Caret_step::word_right},
    {QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord, Caret_step::word_left},
    {QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, Caret_step::down},
    {QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, Caret_step::up},
    {QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage, Caret_step::page_down},
    {QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage, Caret_step::page_up},
    {QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine, Caret_step::line_start},
    {QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine, Caret_step::line_end},
    {QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument,
     Caret_step::text_start},
    {QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument, Caret_step::text_end},
};

/// What the key writes; empty for keys that write nothing. Tab goes to the next control. An access
/// key that nothing has must not end in the program.
QString typed_text(const QKeyEvent& event) {
    if (event.matches(QKeySequence::InsertParagraphSeparator) ||
        event.matches(QKeySequence::InsertLineSeparator)) {
        return "\n";
    }
    const auto command =
        event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier | Qt::AltModifier);
    const bool altgr = event.modifiers().testFlags(Qt::ControlModifier | Qt::AltModifier);
    const QString text = event.text();
    const bool writes = !text.isEmpty() && text[0].isPrint() && (!command || altgr);
    return writes ? text : QString();
}

}  // namespace

Pane_view::Pane_view(Program_pane& pane) : pane_(pane), pace_([this] { refresh(); }) {
    offer_pane_to_assistive_programs();
    setObjectName(to_screen(pane.name()));
    setAccessibleName(to_screen(pane.caption()));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setAcceptDrops(true);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    viewport()->setCursor(Qt::IBeamCursor);
    usual_font_ = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Characters stand in columns, each for itself: shaping would only cost time, while a line
    // waits.
    usual_font_.setStyleStrategy(QFont::PreferNoShaping);
    slices_.setInterval(0);
    QObject::connect(&slices_, &QTimer::timeout, this, [this] { find_more_lines(); });
    connect_scroll_bars();
    pane_.observe([this] { pane_changed(); });
    pace_.run();
}

Pane_view::~Pane_view() {
    pane_.observe({});
}

void Pane_view::connect_scroll_bars() {
    verticalScrollBar()->setAccessibleName("Line");
    horizontalScrollBar()->setAccessibleName("Column");
    QObject::connect(verticalScrollBar(), &QScrollBar::actionTriggered, this,
                     [this] { pane_.stop_following(); });
}

/// What the operator does is shown at once, what a transfer does in its time.
void Pane_view::pane_changed() {
    if (pane_.read_only()) {
        pace_.request();
    } else {
        pace_.run();
    }
}

void Pane_view::refresh() {
    const Shown before = shown_;
    shown_ = {pane_.revision(),
              pane_.content(),
              pane_.zoom(),
              pane_.caret().place(),
              pane_.caret().anchor(),
              pane_.band(),
              verticalScrollBar()->value()};
    if (before.zoom != shown_.zoom) {
        use_zoom();
    }
    if (before.revision != shown_.revision && !pane_.prepare(slice)) {
        slices_.start();
    }
    if (before.content != shown_.content) {
        change_content();
    } else if (before.revision != shown_.revision && shown_.content == Program_pane::Content::log) {
        verticalScrollBar()->setValue(0);
    }
    set_ranges();
    if (before.caret != shown_.caret || before.anchor != shown_.anchor ||
        before.revision != shown_.revision) {
        bring_into_view(shown_.caret);
    }
    scroll_to_news();
    shown_.top = verticalScrollBar()->value();
    if (only_band_moved(before)) {
        update_band(before.band);
        update_band(shown_.band);
    } else {
        viewport()->update();
        tell_assistive_programs();
    }
    if (on_shown) {
        on_shown();
    }
}

bool Pane_view::only_band_moved(const Shown& before) const {
    return before.revision == shown_.revision && before.content == shown_.content &&
           before.zoom == shown_.zoom && before.caret == shown_.caret &&
           before.anchor == shown_.anchor && before.top == shown_.top;
}

void Pane_view::find_more_lines() {
    if (pane_.prepare(slice)) {
        slices_.stop();
    }
    set_ranges();
    scroll_to_news();
    if (on_shown) {
        on_shown();
    }
}

void Pane_view::use_zoom() {
    QFont font = usual_font_;
    font.setPointSizeF(usual_font_.pointSizeF() * pane_.zoom() / 100);
    setFont(font);
    const QFontMetricsF metrics(font);
    column_width_ = metrics.horizontalAdvance('0');
    fixed_pitch_ = QFontInfo(font).fixedPitch();
}

void Pane_view::change_content() {
    const int top = verticalScrollBar()->value();
    set_ranges();
    verticalScrollBar()->setValue(shown_.content == Program_pane::Content::log ? 0 : other_top_);
    other_top_ = top;
}

Pane_layout Pane_view::layout() const {
    const QFontMetrics metrics(font());
    const auto digits = std::max<qsizetype>(
        3, QString::number(static_cast<qulonglong>(pane_.text().line_count())).size());
    Pane_layout layout;
    layout.column_width = column_width_;
    layout.line_height = std::max(1, metrics.height());
    layout.ascent = metrics.ascent();
    layout.margin = static_cast<int>(static_cast<qreal>(digits + 2) * column_width_);
    layout.top = static_cast<std::size_t>(verticalScrollBar()->value());
    layout.left = static_cast<std::size_t>(horizontalScrollBar()->value());
    layout.fixed_pitch = fixed_pitch_;
    return layout;
}

std::size_t Pane_view::page() const {
    return static_cast<std::size_t>(std::max(1, viewport()->height() / layout().line_height));
}

int Pane_view::seen_columns() const {
    const Pane_layout now = layout();
    return std::max(1, static_cast<int>((viewport()->width() - now.margin) / now.column_width) - 1);
}

void Pane_view::set_ranges() {
    const auto lines = static_cast<qint64>(pane_.text().line_count());
    const auto seen = static_cast<qint64>(page());
    verticalScrollBar()->setPageStep(static_cast<int>(seen));
    verticalScrollBar()->setRange(
        0, static_cast<int>(std::clamp<qint64>(lines - seen, 0, std::numeric_limits<int>::max())));
    horizontalScrollBar()->setPageStep(seen_columns());
    horizontalScrollBar()->setRange(0, std::max(0, longest_ - seen_columns()));
}

/// The block being sent is brought to the middle once it leaves what is seen.
void Pane_view::scroll_to_news() {
    if (!shown_.band || !pane_.following()) {
        return;
    }
    const auto line = static_cast<int>(pane_.text().line_at(shown_.band->begin));
    const auto seen = static_cast<int>(page());
    const int top = verticalScrollBar()->value();
    if (line < top || line >= top + seen) {
        verticalScrollBar()->setValue(line - seen / 2);
    }
}

void Pane_view::bring_into_view(std::size_t offset) {
    const Text_view text = pane_.text();
    const auto line = static_cast<int>(text.line_at(offset));
    const auto column = static_cast<int>(text.column_of(offset));
    const auto seen = static_cast<int>(page());
    const int top = verticalScrollBar()->value();
    longest_ = std::max(longest_, column + 1);
    set_ranges();
    if (line < top - seen || line >= top + 2 * seen) {
        verticalScrollBar()->setValue(line - seen / 2);
    } else {
        verticalScrollBar()->setValue(std::clamp(top, line - seen + 1, line));
    }
    const int left = horizontalScrollBar()->value();
    horizontalScrollBar()->setValue(
        std::clamp(left, std::max(0, column - seen_columns() + 1), column));
}

void Pane_view::update_band(const std::optional<Program_pane::Band>& band) {
    if (!band) {
        return;
    }
    const Text_view text = pane_.text();
    const Pane_layout now = layout();
    const std::size_t first = std::max(text.line_at(band->begin), now.top);
    const std::size_t last = std::max(text.line_at(band->begin + band->length), first);
    const std::size_t count = std::min(last - first + 1, page() + 1);
    viewport()->update(0, now.y_of(first), viewport()->width(),
                       static_cast<int>(count) * now.line_height);
}

QRect Pane_view::place_of(std::size_t offset) const {
    const Text_view text = pane_.text();
    const Pane_layout now = layout();
    const auto line = static_cast<qint64>(text.line_at(offset)) - static_cast<qint64>(now.top);
    return {static_cast<int>(now.x_of(text.column_of(offset))),
            static_cast<int>(line) * now.line_height, static_cast<int>(now.column_width),
            now.line_height};
}

std::size_t Pane_view::offset_at(QPoint point) const {
    const Text_view text = pane_.text();
    const Pane_layout now = layout();
    const auto line =
        static_cast<qint64>(now.top) +
        static_cast<qint64>(std::floor(static_cast<qreal>(point.y()) / now.line_height));
    const qreal column =
        static_cast<qreal>(now.left) + (point.x() - now.x_of(now.left)) / now.column_width + 0.5;
    const auto last = static_cast<qint64>(text.line_count()) - 1;
    return text.offset_at(static_cast<std::size_t>(std::clamp<qint64>(line, 0, last)),
                          static_cast<std::size_t>(std::max(0.0, column)));
}

void Pane_view::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setFont(font());
    const Pane_layout now = layout();
    const Pane_colours colours(palette());
    const Text_view text = pane_.text();
    Pane_painter pane(painter, now, colours, text);
    pane.band = pane_.band();
    pane.caret = pane_.caret();
    pane.has_focus = hasFocus();
    const auto longest = static_cast<int>(
        std::min<std::size_t>(pane.paint(event->rect()), std::numeric_limits<int>::max() / 2));
    if (longest > longest_) {
        longest_ = longest;
        set_ranges();
    }
}

void Pane_view::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    set_ranges();
}

void Pane_view::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        viewport()->update();
    }
}

void Pane_view::scrollContentsBy(int, int) {
    viewport()->update();
}

bool Pane_view::step_by_key(QKeyEvent& event) {
    for (const Key_step& each : key_steps) {
        const bool selects = event.matches(each.selects);
        if (selects || event.matches(each.moves)) {
            pane_.step(each.step, selects, page());
            return true;
        }
    }
    return false;
}

bool Pane_view::edit_by_key(const QKeyEvent& event) {
    if (event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete) {
        const bool backwards = event.key() == Qt::Key_Backspace;
        if (event.modifiers().testFlag(Qt::ControlModifier) && !pane_.caret().selects() &&
            !pane_.read_only()) {
            pane_.step(backwards ? Caret_step::word_left : Caret_step::word_right, true, page());
        }
        pane_.erase(backwards);
        return true;
    }
    const QString text = typed_text(event);
    if (text.isEmpty()) {
        return false;
    }
    pane_.type(text.toStdU16String());
    return true;
}

void Pane_view::keyPressEvent(QKeyEvent* event) {
    if (!step_by_key(*event) && !edit_by_key(*event)) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    event->accept();
}

void Pane_view::inputMethodEvent(QInputMethodEvent* event) {
    if (!event->commitString().isEmpty()) {
        pane_.type(event->commitString().toStdU16String());
    }
    event->accept();
}

QVariant Pane_view::inputMethodQuery(Qt::InputMethodQuery query) const {
    if (query == Qt::ImCursorRectangle) {
        return place_of(pane_.caret().place());
    }
    return query == Qt::ImEnabled ? QVariant(!pane_.read_only())
                                  : QAbstractScrollArea::inputMethodQuery(query);
}

void Pane_view::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const std::size_t at = offset_at(event->position().toPoint());
    const bool third = since_double_click_.isValid() &&
                       since_double_click_.elapsed() < QApplication::doubleClickInterval();
    if (third) {
        pane_.caret().select_line(pane_.text(), at);
    } else {
        pane_.caret().put(at, event->modifiers().testFlag(Qt::ShiftModifier));
    }
    since_double_click_.invalidate();
    pane_.moved();
}

void Pane_view::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton)) {
        pane_.caret().put(offset_at(event->position().toPoint()), true);
        pane_.moved();
    }
}

void Pane_view::mouseDoubleClickEvent(QMouseEvent* event) {
    pane_.caret().select_word(pane_.text(), offset_at(event->position().toPoint()));
    since_double_click_.start();
    pane_.moved();
}

void Pane_view::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        const int turned = event->angleDelta().y();
        pane_.zoom_by(turned > 0 ? 1 : turned < 0 ? -1 : 0);
        event->accept();
        return;
    }
    pane_.stop_following();
    QAbstractScrollArea::wheelEvent(event);
}

void Pane_view::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void Pane_view::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void Pane_view::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    }
}

void Pane_view::dragMoveEvent(QDragMoveEvent* event) {
    event->acceptProposedAction();
}

void Pane_view::dropEvent(QDropEvent* event) {
    const auto urls = event->mimeData()->urls();
    if (!urls.isEmpty() && urls.first().isLocalFile() && on_drop) {
        event->acceptProposedAction();
        on_drop(QFile::encodeName(urls.first().toLocalFile()).toStdString());
    }
}

void Pane_view::tell_assistive_programs() const {
    if (QAccessible::isActive()) {
        const auto place = static_cast<int>(pane_.text().position_of(pane_.caret().place()));
        QAccessibleTextCursorEvent moved(const_cast<Pane_view*>(this), place);
        QAccessible::updateAccessibility(&moved);
    }
}

}  // namespace kelvane
